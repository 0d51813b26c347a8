import QtQuick
import QtQuick.Templates as T
import Tamsel

// On is filled, checked and heavier. `on` shows what the model says; whoever uses the button asks
// the model for the change in onClicked.
T.AbstractButton {
    id: button

    property bool on: false

    readonly property color ink: on ? Theme.textOnAccent : Theme.text

    implicitWidth: 148
    implicitHeight: Theme.toggleHeight
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onPressAction: button.clicked()
    Accessible.onToggleAction: button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 6

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.on
                symbol: "checkmark"
                size: Theme.iconInline
                color: button.ink
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                type: button.on ? Theme.formLabel : Theme.button
                text: button.text
                color: button.ink
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.radiusField
        color: button.on ? (button.down ? Theme.accentPressed
                            : button.hovered ? Theme.accentHover : Theme.accentFill)
             : button.down ? Theme.pressed : button.hovered ? Theme.hover : Theme.surface
        border { width: button.on ? 0 : 1; color: Theme.borderStrong }

        FocusRing { visible: button.visualFocus; gap: 1 }
    }
}

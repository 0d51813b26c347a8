import QtQuick
import QtQuick.Templates as T
import Tamsel

// A button that is only an icon; its text is the tooltip and the accessible name.
T.Button {
    id: button

    property string symbol

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: if (enabled) button.clicked()
    Accessible.ignored: !visible
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: button.symbol
            color: !button.enabled ? Theme.textDisabled
                 : button.hovered || button.visualFocus ? Theme.text : Theme.textMuted
        }
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: button.down ? Theme.pressed : button.hovered ? Theme.hover : Theme.none

        FocusRing { visible: button.visualFocus; gap: 0 }
    }

    Tooltip {
        owner: button
        text: button.text
        wanted: button.hovered || button.visualFocus
    }
}

import QtQuick
import QtQuick.Templates as T
import Tamsel

T.Button {
    id: button

    enum Kind { Primary, Secondary, Destructive, DangerOutline }

    property int kind: Button.Secondary
    property string symbol
    property string keyHint
    // Work that this button began still runs: it can't be pressed again.
    property bool busy: false

    readonly property bool filled: kind === Button.Primary || kind === Button.Destructive
    readonly property color ink: !enabled ? Theme.textDisabled
                               : filled ? Theme.textOnAccent
                               : kind === Button.DangerOutline ? Theme.red : Theme.text
    readonly property color face: {
        if (!enabled)
            return Theme.graySoft;
        if (kind === Button.Primary)
            return down ? Theme.accentPressed : hovered ? Theme.accentHover : Theme.accentFill;
        if (kind === Button.Destructive)
            return down || hovered ? Qt.darker(Theme.redFill, down ? 1.3 : 1.15) : Theme.redFill;
        return down ? Theme.pressed : hovered ? Theme.hover : Theme.surface;
    }

    implicitWidth: leftPadding + implicitContentWidth + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: keyHint ? 14 : 15
    rightPadding: keyHint ? 11 : 15
    enabled: !busy
    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: if (enabled) button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    contentItem: Item {
        // An id in here would make the item before it is wanted.
        implicitWidth: (children[0] as Row).implicitWidth
        implicitHeight: (children[0] as Row).implicitHeight

        Row {
            anchors.centerIn: parent
            spacing: 8

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.busy
                color: button.ink
            }
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol && !button.busy
                symbol: button.symbol
                size: Theme.iconSmall
                color: button.ink
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                type: Theme.button
                text: button.text
                color: button.ink
                Accessible.ignored: true
            }
            Item { // two more pixels of air before the hint
                width: 2 - parent.spacing
                height: 1
                visible: button.keyHint
            }
            KeyHint {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.keyHint
                key: button.keyHint
                ink: button.ink
                outline: button.ink
            }
        }
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: button.face
        border {
            width: button.filled && button.enabled ? 0 : 1
            color: button.enabled ? Theme.borderStrong : Theme.border
        }
        Behavior on color { ColorAnimation { duration: Theme.motion } }

        FocusRing { visible: button.visualFocus }
    }
}

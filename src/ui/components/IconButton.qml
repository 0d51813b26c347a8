import QtQuick
import QtQuick.Templates as T
import Tamsel

// A button that is only an icon; its text is the tooltip and the accessible name.
T.Button {
    id: button

    property string symbol
    property bool filled: false
    // Work that this button began still runs: it can't be pressed again.
    property bool busy: false

    readonly property color ink: !enabled ? Theme.textDisabled
                               : filled ? Theme.textOnAccent
                               : hovered || visualFocus ? Theme.text : Theme.textMuted
    readonly property color face: {
        if (filled)
            return !enabled ? Theme.graySoft : down ? Theme.accentPressed
                 : hovered ? Theme.accentHover : Theme.accentFill;
        return down ? Theme.pressed : hovered ? Theme.hover : Theme.none;
    }

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    enabled: !busy
    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: if (enabled) button.clicked()
    Accessible.ignored: !visible
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            visible: !button.busy
            symbol: button.symbol
            color: button.ink
        }
        Spinner {
            anchors.centerIn: parent
            visible: button.busy
            color: button.ink
        }
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: button.face

        FocusRing { visible: button.visualFocus; gap: button.filled ? 2 : 0 }
    }

    Tooltip {
        owner: button
        text: button.text
        wanted: button.hovered || button.visualFocus
    }
}

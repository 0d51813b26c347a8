import QtQuick
import Tamsel

// A sign that something is in a row's way: the message on hover and focus, and in `detail` with
// what.
Item {
    id: mark

    property string symbol
    property color ink: Theme.orange
    property int size: Theme.iconRow
    property string message
    property string detail

    implicitWidth: Theme.conflictMark
    implicitHeight: Theme.conflictMark
    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.name: message
    Accessible.description: detail
    Accessible.focusable: true

    Icon {
        anchors.centerIn: parent
        symbol: mark.symbol
        size: mark.size
        color: mark.ink
    }
    FocusRing {
        visible: mark.activeFocus
        gap: -3
        parentRadius: Theme.radiusField
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: mark.forceActiveFocus(Qt.MouseFocusReason) }
    Tooltip {
        owner: mark
        text: mark.detail ? mark.message + "\n" + mark.detail : mark.message
        wanted: hover.hovered || mark.activeFocus
    }
}

import QtQuick
import Tamsel

// A page tab; the selection is its owner's.
FocusItem {
    id: item

    property string text
    property string symbol
    property string keyHint
    property bool selected: false

    readonly property color ink: selected ? Theme.accent : Theme.text

    signal clicked

    implicitHeight: Theme.sidebarItemHeight
    // One Tab stop for the whole list; Up and Down move inside it.
    // What has the keyboard keeps its place in the order of tabs until it has lost it.
    activeFocusOnTab: selected || activeFocus
    Accessible.focusable: true
    Accessible.role: Accessible.PageTab
    Accessible.onPressAction: clicked()
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: selected
    Keys.onReturnPressed: item.clicked()
    Keys.onEnterPressed: item.clicked()
    Keys.onSpacePressed: item.clicked()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusField
        color: item.selected ? Theme.accentSoft
             : pointer.containsPress ? Theme.pressed
             : pointer.containsMouse ? Theme.hover : Theme.none

        FocusRing {
            visible: item.visualFocus
            gap: -border.width
        }
    }
    MouseArea {
        id: pointer
        anchors.fill: parent
        hoverEnabled: true
        onPressed: item.forceActiveFocus(Qt.MouseFocusReason)
        onClicked: item.clicked()
    }
    Rectangle {
        x: 4
        anchors.verticalCenter: parent.verticalCenter
        width: 3
        height: 16
        radius: width / 2
        visible: item.selected
        color: Theme.accent
    }
    Icon {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: item.symbol
        size: Theme.iconSidebar
        color: item.selected ? Theme.accent : Theme.textMuted
    }
    Label {
        x: 46
        width: parent.width - x - Theme.keyHint - 18
        anchors.verticalCenter: parent.verticalCenter
        type: item.selected ? Theme.sidebarSelected : Theme.sidebar
        text: item.text
        color: item.ink
        Accessible.ignored: true
    }
    KeyHint {
        x: parent.width - width - 10
        anchors.verticalCenter: parent.verticalCenter
        key: item.keyHint
        ink: item.selected ? Theme.accent : Theme.textMuted
        outline: item.selected ? Theme.accent : Theme.borderFaint
    }
}

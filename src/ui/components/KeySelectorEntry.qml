import QtQuick
import QtQuick.Templates as T
import Tamsel

// One key in the key selector's menu; the keyboard stays in the menu's filter.
T.ItemDelegate {
    id: entry

    property bool current: false

    implicitHeight: Theme.menuEntryHeight
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.onPressAction: clicked()
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: current

    contentItem: Item {
        Icon {
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            visible: entry.current
            symbol: "checkmark"
            size: Theme.iconInline
            color: Theme.accent
        }
        Label {
            x: 35
            width: parent.width - x - 16
            anchors.verticalCenter: parent.verticalCenter
            type: Theme.mono
            text: entry.text
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        color: entry.down ? Theme.pressed
             : entry.highlighted ? Theme.accentSoft : entry.hovered ? Theme.hover : Theme.none
    }
}

import QtQuick
import Tamsel

// The tabs of a page, a line below them. One Tab stop; Left and Right choose.
Item {
    id: bar

    // What can be chosen, in the order of its values from 0: { text, key }.
    required property var tabs
    required property int current

    signal chosen(int value)

    function step(by: int): void {
        const next = current + by;
        if (next < 0 || next >= tabs.length)
            return;
        chosen(next);
        (cells.itemAt(next) as Item).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: Theme.tabBarHeight
    Accessible.role: Accessible.PageTabList
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Rectangle {
        y: parent.height - 1
        width: parent.width
        height: 1
        color: Theme.border
    }
    Row {
        id: line
        height: parent.height
        spacing: 4

        Repeater {
            id: cells
            model: bar.tabs

            Tab {
                id: tab

                required property var modelData
                required property int index

                readonly property TabBar owner: parent ? parent.parent as TabBar : null

                height: parent ? parent.height : 0
                text: modelData.text
                key: modelData.key
                isChosen: owner && owner.current === index
                onClicked: owner.chosen(index)
            }
        }
    }
}

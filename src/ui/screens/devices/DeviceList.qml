import QtQuick
import QtQuick.Templates as T
import Tamsel

// The devices in one card. Only the rows near the visible part exist.
ListView {
    id: list

    required property DeviceMgrVM devices
    required property int cardWidth

    signal leftForward()
    signal leftBackward()

    // Gives the keyboard to a row's switch, scrolling there.
    function focusRow(index: int, reason: int): void {
        if (index < 0) {
            leftBackward();
        } else if (index >= count) {
            leftForward();
        } else {
            positionViewAtIndex(index, ListView.Contain);
            forceLayout();
            const row = itemAtIndex(index) as DeviceRowV;
            if (row)
                row.focusSwitch(reason);
        }
    }

    // Scrolls to the row that holds an item, or to what stands above the rows.
    function reveal(item: Item): void {
        for (let inside = item; inside; inside = inside.parent) {
            const row = inside as DeviceRowV;
            if (row) {
                positionViewAtIndex(row.index, ListView.Contain);
                return;
            }
            if (inside === contentItem)
                contentY = originY - topMargin;
        }
    }

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    reuseItems: true
    cacheBuffer: 400
    footer: Item { height: 24 }
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Devices")
    T.ScrollBar.vertical: ScrollBar {}

    delegate: DeviceRowV {
        id: row

        readonly property DeviceList list: ListView.view as DeviceList

        width: ListView.view ? ListView.view.width : 0
        cardWidth: list ? list.cardWidth : 0
        isFirst: index === 0
        isLast: list && index === list.count - 1
        onToggled: on => list.devices.setEnabled(row.row.key, on)
        Keys.onTabPressed: list.focusRow(index + 1, Qt.TabFocusReason)
        Keys.onBacktabPressed: list.focusRow(index - 1, Qt.BacktabFocusReason)
        // What waits for its next row is on no screen, for assistive technology either.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true
    }
}

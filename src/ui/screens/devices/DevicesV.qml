import QtQuick
import Tamsel

// What the daemon has seen, and what it may do with it.
PageFrame {
    id: page

    required property Screens screens
    readonly property DeviceMgrVM devices: screens.devices

    title: qsTr("Devices")
    scroller: list
    onShownChanged: if (shown) devices.reload()
    onFocusMoved: item => list.reveal(item)
    Component.onCompleted: devices.reload()
    Keys.onEscapePressed: devices.cancelMouseTakeover()

    actions: Button {
        id: refreshButton
        text: qsTr("Refresh")
        symbol: "arrow.clockwise"
        onClicked: page.devices.refresh()
        Keys.onTabPressed: {
            if (banner.visible)
                banner.firstButton.forceActiveFocus(Qt.TabFocusReason);
            else
                list.focusFirst();
        }
    }

    GadgetListModel {
        id: deviceRows
        source: page.devices
        list: "rows"
        key: "key"
    }
    DeviceList {
        id: list
        anchors.fill: parent
        devices: page.devices
        cardWidth: page.contentWidth
        rows: deviceRows
        topMargin: top.height
        onTopMarginChanged: if (contentY <= originY) contentY = originY - topMargin
        onLeftForward: end.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        onLeftBackward: {
            if (banner.visible)
                banner.lastButton.forceActiveFocus(Qt.BacktabFocusReason);
            else
                refreshButton.forceActiveFocus(Qt.BacktabFocusReason);
        }
    }
    // Scrolls with the rows, above the first one.
    Column {
        id: top
        parent: list.contentItem
        x: Math.round((list.width - width) / 2)
        y: list.originY - height
        width: page.contentWidth
        spacing: 5
        bottomPadding: 14

        TakeoverBanner {
            id: banner
            width: parent.width
            devices: page.devices
            // Whoever is asked sees the question, however far down the device is.
            onVisibleChanged: if (visible) list.contentY = list.originY - list.topMargin
            onFocusLeft: refreshButton.forceActiveFocus(Qt.TabFocusReason)
            Keys.onTabPressed: {
                if (lastButton.activeFocus)
                    list.focusFirst();
                else
                    lastButton.forceActiveFocus(Qt.TabFocusReason);
            }
            Keys.onBacktabPressed: {
                if (firstButton.activeFocus)
                    refreshButton.forceActiveFocus(Qt.BacktabFocusReason);
                else
                    firstButton.forceActiveFocus(Qt.BacktabFocusReason);
            }
        }
        Item { width: 1; height: 4; visible: banner.visible }
        DeviceNote {
            width: parent.width
            symbol: "keyboard"
            text: qsTr("Keyboard-only devices are listened to by default. Turn the device off so Tamsel ignores it.")
        }
        DeviceNote {
            width: parent.width
            symbol: "computermouse"
            text: qsTr("Devices with a mouse are off by default. Turn one on only when you want Tamsel to take over that mouse and remap its extra buttons.")
        }
    }
    Card {
        parent: list.contentItem
        x: Math.round((list.width - width) / 2)
        y: list.originY
        width: page.contentWidth
        height: 240
        visible: deviceRows.count === 0

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.cardPadding
            symbol: "keyboard"
            text: qsTr("No devices detected yet.")
        }
    }
    Item { id: end }
}

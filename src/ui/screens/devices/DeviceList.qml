import QtQuick
import Tamsel

// The devices in one card.
RowList {
    id: list

    required property DeviceMgrVM devices

    Accessible.name: qsTr("Devices")

    delegate: DeviceRowV {
        id: row

        readonly property DeviceList list: ListView.view as DeviceList

        width: ListView.view ? ListView.view.width : 0
        cardWidth: list ? list.cardWidth : 0
        isFirst: index === 0
        isLast: list && index === list.count - 1
        onToggled: on => list.devices.setEnabled(row.row.key, on)
    }
}

import QtQuick
import Tamsel

FocusScope {
    id: sidebar

    required property MainVM model

    readonly property list<QtObject> entries: [
        SidebarEntry {
            page: MainVM.Dashboard
            title: qsTr("Dash")
            symbol: "gauge.with.dots.needle.bottom.50percent"
        },
        SidebarEntry { page: MainVM.Mapping; title: qsTr("Mapping"); symbol: "keyboard" },
        SidebarEntry { page: MainVM.Combo; title: qsTr("Combo"); symbol: "command.square" },
        SidebarEntry { page: MainVM.Devices; title: qsTr("Devices"); symbol: "cable.connector" },
        SidebarEntry { page: MainVM.About; title: qsTr("About"); symbol: "info.circle" }
    ]

    component SidebarEntry: QtObject {
        required property int page
        required property string title
        required property string symbol
    }

    // Gives the keyboard to the entry of the screen that is shown.
    function focusSelected(reason: int): void {
        items.itemAt(model.selected).forceActiveFocus(reason);
    }

    function focusNeighbour(index: int): void {
        items.itemAt(Math.min(Math.max(index, 0), items.count - 1))
             .forceActiveFocus(Qt.TabFocusReason);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebarBg

        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: Theme.border
        }
    }

    Image {
        x: 20
        y: 19
        sourceSize: Qt.size(Theme.logo, Theme.logo)
        source: Qt.resolvedUrl("../icons/sidebar-logo.svg")
        Accessible.ignored: true
    }
    Label {
        x: 60
        y: 23
        type: Theme.product
        text: qsTr("Tamsel")
    }

    Column {
        x: Theme.sidebarPadding
        y: 68
        width: parent.width - 2 * x - 1
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Screens")

        Repeater {
            id: items
            model: sidebar.entries

            SidebarItem {
                id: item
                required property SidebarEntry modelData
                required property int index

                width: parent.width
                text: modelData.title
                symbol: modelData.symbol
                keyHint: index + 1
                selected: sidebar.model.selected === modelData.page
                onClicked: sidebar.model.selected = modelData.page
                Keys.onUpPressed: sidebar.focusNeighbour(index - 1)
                Keys.onDownPressed: sidebar.focusNeighbour(index + 1)
            }
        }
    }
}

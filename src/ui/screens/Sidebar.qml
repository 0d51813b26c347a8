import QtQuick
import Tamsel

FocusScope {
    id: sidebar

    required property MainVM model

    // The title and the file of the screen that is shown.
    readonly property string title: (items.children[model.selected] as SidebarEntry).text
    readonly property string page: (items.children[model.selected] as SidebarEntry).page

    // Gives the keyboard to the entry of the screen that is shown.
    function focusSelected(reason: int): void {
        items.children[model.selected].forceActiveFocus(reason);
    }

    function moveFocus(step: int): void {
        for (let place = 0; place < items.children.length; ++place) {
            const next = items.children[place + step];
            if (items.children[place].activeFocus && next) {
                next.forceActiveFocus(Qt.TabFocusReason);
                return;
            }
        }
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
        sourceSize { width: Theme.logo; height: Theme.logo }
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
        id: items
        x: Theme.sidebarPadding
        y: 68
        width: parent.width - 2 * x - 1
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Screens")

        Keys.onUpPressed: sidebar.moveFocus(-1)
        Keys.onDownPressed: sidebar.moveFocus(1)

        SidebarEntry {
            main: sidebar.model
            place: MainVM.Dashboard
            page: "dash/DashV.qml"
            text: qsTr("Dash")
            symbol: "gauge.with.dots.needle.bottom.50percent"
        }
        SidebarEntry {
            main: sidebar.model
            place: MainVM.Mapping
            page: "mapping/MappingV.qml"
            text: qsTr("Mapping")
            symbol: "keyboard"
        }
        SidebarEntry {
            main: sidebar.model
            place: MainVM.Combo
            page: "combo/ComboV.qml"
            text: qsTr("Combo")
            symbol: "command.square"
        }
        SidebarEntry {
            main: sidebar.model
            place: MainVM.Devices
            page: "devices/DevicesV.qml"
            text: qsTr("Devices")
            symbol: "cable.connector"
        }
        SidebarEntry {
            main: sidebar.model
            place: MainVM.About
            page: "about/AboutV.qml"
            text: qsTr("About")
            symbol: "info.circle"
        }
    }
}

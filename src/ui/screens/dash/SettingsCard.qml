import QtQuick
import Tamsel

// How the application itself behaves, and the way to end all of it.
Card {
    id: card

    required property DashboardVM dashboard

    height: column.height + 2

    Column {
        id: column
        x: 1
        y: 1
        width: parent.width - 2

        ToggleRow {
            width: parent.width
            symbol: "login"
            text: qsTr("Launch at Login")
            checked: card.dashboard.isLaunchAtLoginEnabled
            onToggled: on => card.dashboard.setLaunchAtLoginEnabled(on)
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        ToggleRow {
            width: parent.width
            symbol: "menubar.rectangle"
            text: qsTr("Show in Menu Bar")
            checked: card.dashboard.showInMenuBar
            onToggled: on => card.dashboard.setShowInMenuBar(on)
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        Item {
            width: parent.width
            height: 54

            Button {
                x: 13
                anchors.verticalCenter: parent.verticalCenter
                kind: Button.DangerOutline
                symbol: "power"
                text: qsTr("Full Quit")
                onClicked: card.dashboard.showFullQuitConfirm = true
            }
        }
    }
}

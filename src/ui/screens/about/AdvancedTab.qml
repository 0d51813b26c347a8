import QtQuick
import Tamsel

// What is seldom wanted.
Item {
    id: tab

    required property AboutVM about

    readonly property int tileWidth: (width - row.spacing) / 2

    Row {
        id: row
        width: parent.width
        spacing: 14

        ActionTile {
            width: tab.tileWidth
            symbol: "keyboard"
            text: qsTr("Key Viewer")
            keyHint: "K"
            onClicked: tab.about.openKeyViewer()
        }
        ActionTile {
            width: tab.tileWidth
            symbol: "delete"
            text: qsTr("Uninstall")
            line: qsTr("This will unregister the keyboard driver and daemon service.")
            dangerous: true
            onClicked: tab.about.showUninstallConfirm = true
        }
    }
}

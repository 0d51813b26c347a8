import QtQuick
import Tamsel

// The way to the key viewer, until the product's own lines join it.
Page {
    id: page

    required property MainVM main
    required property KeyboardShortcutHandler keys

    title: qsTr("About")
    onShownChanged: {
        if (shown)
            keys.install();
        else
            keys.remove();
    }
    Component.onCompleted: keys.install()
    Component.onDestruction: keys.remove()

    Card {
        width: parent.width
        height: 64

        Label {
            x: Theme.cardPadding
            width: opener.x - 2 * x
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("See each key as the daemon gets it and what becomes of it.")
            color: Theme.textMuted
        }
        Button {
            id: opener
            anchors { right: parent.right; rightMargin: Theme.cardPadding }
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Key Viewer")
            symbol: "keyboard"
            keyHint: "K"
            onClicked: page.main.keyViewerRequested()
        }
    }
}

import QtQuick
import Tamsel

// The key viewer's window. It listens while it is shown, and ends when it is closed.
Window {
    id: window

    required property KeyViewerVM viewer

    readonly property int edge: 22

    title: qsTr("Key Viewer")
    width: 680
    height: 580
    minimumWidth: 560
    minimumHeight: 420
    color: Theme.windowBg
    visible: true
    onVisibleChanged: {
        if (visible)
            viewer.start();
        else
            viewer.stop();
    }
    Component.onCompleted: viewer.start()
    Component.onDestruction: viewer.stop()

    KeyGate { window: window }

    // Typed keys are not to go elsewhere; the window needs a moment to be there.
    Timer {
        interval: 100
        running: window.visible
        onTriggered: input.forceActiveFocus(Qt.ActiveWindowFocusReason)
    }
    Shortcut {
        sequences: ["Ctrl+W", "Meta+W"]
        onActivated: window.close()
    }

    Label {
        x: window.edge
        y: 18
        type: Theme.title
        text: qsTr("Key Viewer")
        Accessible.role: Accessible.Heading
    }
    StatusPill {
        anchors { right: parent.right; rightMargin: window.edge }
        y: 21
        symbol: window.viewer.isDaemonConnected ? "checkmark.circle.fill" : "circle.dashed"
        text: window.viewer.isDaemonConnected ? qsTr("Daemon") : qsTr("NSEvent")
        ink: window.viewer.isDaemonConnected ? Theme.green : Theme.textMuted
        tint: window.viewer.isDaemonConnected ? Theme.greenSoft : Theme.graySoft
    }
    Label {
        x: window.edge
        y: 57
        width: parent.width - 2 * x
        text: qsTr("Click in the input area below and press any key to see its name and category")
        color: Theme.textMuted
    }
    KeyInput {
        id: input
        x: window.edge
        y: 81
        width: parent.width - 2 * x
    }
    KeyViewerTable {
        x: window.edge
        y: 139
        width: parent.width - 2 * x
        height: buttons.y - y - 14
        viewer: window.viewer
    }
    Row {
        id: buttons
        anchors { right: parent.right; rightMargin: window.edge }
        y: parent.height - height - 14
        spacing: 10

        Button {
            text: qsTr("Clear")
            onClicked: window.viewer.clear()
        }
        Button {
            kind: Button.Primary
            text: qsTr("Close")
            onClicked: window.close()
        }
    }
}

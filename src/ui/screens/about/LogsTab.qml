import QtQuick
import Tamsel

// The application's log, newest first.
Item {
    id: tab

    required property AboutVM about

    readonly property bool isEmpty: about.logCount === 0

    Item {
        id: head
        width: parent.width
        height: Theme.controlHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            type: Theme.heading
            text: qsTr("Execution Logs (%1)").arg(tab.about.logCount)
            Accessible.role: Accessible.Heading
        }
        Row {
            anchors.right: parent.right
            spacing: 8

            Button {
                text: qsTr("Copy All")
                symbol: "copy"
                enabled: !tab.isEmpty
                onClicked: tab.about.copyLog()
            }
            Button {
                text: qsTr("Clear")
                enabled: !tab.isEmpty
                onClicked: tab.about.clearLog()
            }
        }
    }
    TextView {
        anchors { fill: parent; topMargin: head.height + 10 }
        color: Theme.surfaceAlt
        type: Theme.mono
        label: qsTr("Execution Logs")
        wrapMode: TextEdit.NoWrap
        text: tab.about.logText

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.cardPadding
            visible: tab.isEmpty
            text: qsTr("No logs yet. Logs will be recorded automatically during operations.")
        }
    }
}

import QtQuick
import Tamsel

// The newest entry of the change log: a bullet for each line that begins with "- ".
Card {
    id: card

    required property DashboardVM dashboard

    visible: dashboard.latestChangelog
    height: column.height + 15 + 16

    Column {
        id: column
        x: 20
        y: 15
        width: parent.width - 2 * x

        Row {
            bottomPadding: 8
            spacing: 8

            Icon {
                anchors.verticalCenter: title.verticalCenter
                symbol: "sparkles"
                color: Theme.accent
            }
            Label {
                id: title
                type: Theme.heading
                text: qsTr("What's New in v%1").arg(card.dashboard.version)
                Accessible.role: Accessible.Heading
            }
        }
        Repeater {
            model: card.dashboard.latestChangelog.split("\n")

            Item {
                id: line

                required property string modelData

                readonly property bool bullet: modelData.startsWith("- ")

                width: parent ? parent.width : 0
                height: label.height + 3

                Rectangle {
                    x: 10
                    y: 8
                    width: 4
                    height: 4
                    radius: 2
                    visible: line.bullet
                    color: Theme.textMuted
                }
                Label {
                    id: label
                    x: line.bullet ? 23 : 0
                    y: 1
                    width: parent.width - x
                    text: line.bullet ? line.modelData.slice(2) : line.modelData
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}

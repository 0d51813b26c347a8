import QtQuick
import Tamsel

// The product, its version, where it lives and who makes it.
Item {
    id: head

    required property AboutVM about

    implicitHeight: 64

    Image {
        id: logo
        sourceSize { width: 64; height: 64 }
        source: Qt.resolvedUrl("../../icons/sidebar-logo.svg")
        Accessible.ignored: true
    }
    Column {
        x: 82
        y: 1
        width: parent.width - x
        spacing: 3

        Row {
            spacing: 10

            Label {
                id: name
                type: Theme.title
                lineHeight: 24
                text: qsTr("Tamsel")
                Accessible.role: Accessible.Heading
            }
            Label {
                anchors.baseline: name.baseline
                text: head.about.versionLine
                color: Theme.textMuted
            }
        }
        Label {
            width: parent.width
            text: qsTr("A keyboard shortcut customization tool for macOS")
        }
        Row {
            topPadding: 1
            spacing: 14

            Link {
                text: qsTr("Website")
                onClicked: head.about.openWebsite()
            }
            Rectangle {
                y: 3
                width: 1
                height: 12
                color: Theme.borderStrong
            }
            Label {
                type: Theme.small
                text: qsTr("Made by the Tamsel project")
                color: Theme.textMuted
            }
        }
    }
}

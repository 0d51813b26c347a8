import QtQuick
import Tamsel

Page {
    id: page

    required property ConnectionVM connection

    Card {
        width: parent.width
        height: 86

        Rectangle {
            id: tile
            x: 1 + Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.heroTile
            height: Theme.heroTile
            radius: Theme.radiusCard
            color: page.connection.connected ? Theme.accentFill : Theme.graySoft

            Icon {
                anchors.centerIn: parent
                symbol: "keyboard"
                size: Theme.iconTile
                color: page.connection.connected ? Theme.textOnAccent : Theme.textMuted
            }
        }

        Column {
            anchors {
                left: tile.right
                leftMargin: 16
                right: parent.right
                rightMargin: 16
                verticalCenter: parent.verticalCenter
            }
            spacing: 2

            Label {
                type: Theme.hero
                text: qsTr("Tamsel")
                Accessible.role: Accessible.Heading
            }
            Row {
                width: parent.width
                spacing: 6
                visible: page.connection.statusText

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: page.connection.connected ? "checkmark.circle.fill" : "circle.dashed"
                    size: Theme.iconInline
                    color: status.color
                }
                Label {
                    id: status
                    width: parent.width - x
                    text: page.connection.statusText
                    color: page.connection.connected ? Theme.green : Theme.textMuted
                }
            }
        }
    }
}

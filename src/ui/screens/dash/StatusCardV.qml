import QtQuick
import Tamsel

// One part of the system that needs the user, or is being waited for.
Card {
    id: card

    required property statusCard row

    readonly property color ink: row.tone === DashboardVM.Error ? Theme.red
                               : row.tone === DashboardVM.Accent ? Theme.accent
                               : row.tone === DashboardVM.Warning ? Theme.orange
                               : Theme.textMuted
    readonly property color tint: row.tone === DashboardVM.Error ? Theme.redSoft
                                : row.tone === DashboardVM.Accent ? Theme.accentSoft
                                : row.tone === DashboardVM.Warning ? Theme.orangeSoft
                                : Theme.graySoft

    signal acted()

    implicitHeight: Math.max(lines.height, Theme.cardTile) + 2 * 15
    border.color: row.tone === DashboardVM.Neutral ? Theme.border : ink
    Accessible.role: Accessible.AlertMessage
    Accessible.name: `${row.title} ${row.lead} ${row.text}`

    Rectangle {
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.cardTile
        height: Theme.cardTile
        radius: 9
        color: card.tint

        Icon {
            anchors.centerIn: parent
            visible: card.row.symbol
            symbol: card.row.symbol
            size: Theme.iconSidebar
            color: card.ink
        }
        Spinner {
            anchors.centerIn: parent
            visible: !card.row.symbol
            size: Theme.iconSidebar
            color: Theme.accent
        }
    }
    Column {
        id: lines
        x: 66
        width: (button.visible ? button.x - 16 : parent.width - 1 - Theme.cardPadding) - x
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            type: Theme.heading
            text: card.row.title
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            visible: text
            type: Theme.button
            text: card.row.lead
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            visible: text
            text: card.row.text
            color: Theme.textMuted
            wrapMode: Text.Wrap
        }
    }
    Button {
        id: button
        anchors {
            right: parent.right
            rightMargin: 1 + Theme.cardPadding
            verticalCenter: parent.verticalCenter
        }
        visible: text
        kind: card.row.primary ? Button.Primary : Button.Secondary
        text: card.row.button
        onClicked: card.acted()
    }
}

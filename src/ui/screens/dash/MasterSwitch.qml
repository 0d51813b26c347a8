import QtQuick
import Tamsel

// The product, how it is doing, and the switch for all of it.
Card {
    id: master

    required property DashboardVM dashboard

    function focusSwitch(): void {
        control.forceActiveFocus(Qt.TabFocusReason);
    }

    height: 86

    Rectangle {
        id: tile
        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.heroTile
        height: Theme.heroTile
        radius: Theme.radiusCard
        color: master.dashboard.isRunning ? Theme.accentFill : Theme.graySoft

        Icon {
            anchors.centerIn: parent
            symbol: "keyboard"
            size: Theme.iconTile
            color: master.dashboard.isRunning ? Theme.textOnAccent : Theme.textMuted
        }
    }
    Column {
        anchors {
            left: tile.right
            leftMargin: 16
            right: control.left
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
            visible: status.text

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: master.dashboard.isRunning ? "checkmark.circle.fill" : "circle.dashed"
                size: Theme.iconInline
                color: status.color
            }
            Label {
                id: status
                width: parent.width - x
                type: Theme.button
                text: master.dashboard.statusLine
                color: master.dashboard.isRunning ? Theme.green : Theme.textMuted
            }
        }
    }
    Switch {
        id: control
        anchors { right: parent.right; rightMargin: 19; verticalCenter: parent.verticalCenter }
        size: Theme.masterSwitchSize
        text: qsTr("Tamsel")
        checked: master.dashboard.remappingEnabled
        onToggled: {
            const wanted = checked;
            checked = Qt.binding(() => master.dashboard.remappingEnabled);
            master.dashboard.setRemappingEnabled(wanted);
        }
    }
}

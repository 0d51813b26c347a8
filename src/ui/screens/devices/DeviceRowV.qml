import QtQuick
import Tamsel

// One device: what it is, whether the daemon holds it, and its switch.
RowCell {
    id: view

    required property deviceRow row
    property bool isFirst: false
    property bool isLast: false
    property int cardWidth

    signal toggled(bool on)

    rowId: row.key
    stops: [onOff]
    height: Theme.deviceRowHeight + (isFirst ? 1 : 0)
    Accessible.role: Accessible.ListItem
    Accessible.name: `${row.name}, ${row.type}, ${row.identifier}` + (row.active ? ", " + pill.text : "")

    CardSlice {
        id: slice
        x: Math.round((parent.width - width) / 2)
        width: view.cardWidth
        height: parent.height
        isFirst: view.isFirst
        isLast: view.isLast
    }
    Rectangle {
        id: tile
        x: slice.x + Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: 46
        height: 38
        radius: 9
        color: view.row.active ? Theme.accentSoft : Theme.graySoft

        Row {
            anchors.centerIn: parent
            spacing: 5

            Icon {
                visible: view.row.hasKeyboard
                symbol: "keyboard"
                size: view.row.hasMouse ? Theme.iconInline + 1 : Theme.iconSidebar
                color: view.row.active ? Theme.accent : Theme.textMuted
            }
            Icon {
                visible: view.row.hasMouse
                symbol: "computermouse"
                size: view.row.hasKeyboard ? Theme.iconInline + 1 : Theme.iconSidebar
                color: view.row.active ? Theme.accent : Theme.textMuted
            }
        }
    }
    Column {
        x: slice.x + 77
        width: label.x - x - 12
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 1

        Row {
            width: parent.width
            spacing: 8

            Label {
                width: Math.min(implicitWidth,
                                parent.width - (pill.visible ? pill.width + parent.spacing : 0))
                type: Theme.rowTitle
                text: view.row.name
            }
            StatusPill {
                id: pill
                visible: view.row.active
                symbol: "checkmark.circle.fill"
                text: qsTr("Active")
                ink: Theme.green
                tint: Theme.greenSoft
            }
        }
        Row {
            spacing: 14

            Label {
                type: Theme.small
                text: view.row.type
                color: Theme.textMuted
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 1
                height: 12
                color: Theme.borderStrong
            }
            Label {
                type: Theme.mono
                text: view.row.identifier
                color: Theme.textMuted
            }
        }
    }
    Label {
        id: label
        x: onOff.x - width - 14
        anchors.verticalCenter: parent.verticalCenter
        type: Theme.button
        text: view.row.hasMouse ? qsTr("Take over") : qsTr("Listen")
        color: Theme.textMuted
        Accessible.ignored: true
    }
    Switch {
        id: onOff
        x: slice.x + slice.width - width - Theme.cardPadding - 1
        anchors.verticalCenter: parent.verticalCenter
        focus: true
        text: qsTr("%1: %2").arg(label.text).arg(view.row.name)
        checked: view.row.on
        onToggled: {
            const wanted = checked;
            // The model decides; the switch goes on showing what it says.
            checked = Qt.binding(() => view.row.on);
            view.toggled(wanted);
        }
    }
}

import QtQuick
import Tamsel

// What a combo is called and does, and the line for a system shortcut that it takes over.
Column {
    id: column

    required property comboRow row

    readonly property string title: row.title || qsTr("Untitled")
    readonly property Item link: linkLoader.item as Item

    signal linkOpened()

    Row {
        width: parent.width
        spacing: 8

        Label {
            width: Math.min(implicitWidth, parent.width - linkLoader.width - pill.width
                                           - 2 * parent.spacing)
            type: Theme.rowTitle
            text: column.title
            color: column.row.title ? Theme.text : Theme.textMuted
        }
        Loader {
            id: linkLoader
            anchors.verticalCenter: parent.verticalCenter
            active: column.row.linkText
            width: active ? implicitWidth : 0
            visible: active
            sourceComponent: Link {
                text: column.row.linkText
                about: column.title
                onClicked: column.linkOpened()
            }
        }
        Loader {
            id: pill
            anchors.verticalCenter: parent.verticalCenter
            active: column.row.holdMode
            width: active ? implicitWidth : 0
            visible: active
            sourceComponent: StatusPill { text: qsTr("Hold mode") }
        }
    }
    ComboActionLine {
        width: parent.width
        symbol: column.row.holdMode ? "arrow.down" : ""
        action: column.row.action
        value: column.row.value
    }
    Loader {
        width: parent.width
        active: column.row.holdMode
        visible: active
        sourceComponent: ComboActionLine {
            symbol: "arrow.up"
            action: column.row.upAction
            value: column.row.upValue
        }
    }
    Loader {
        width: parent.width
        active: column.row.systemShortcut
        visible: active
        sourceComponent: Item {
            implicitHeight: message.height + 4

            Icon {
                y: 6
                symbol: "exclamationmark.shield.fill"
                size: Theme.iconSmall - 2
                color: Theme.yellow
            }
            Label {
                id: message
                x: 22
                y: 4
                width: parent.width - x
                type: Theme.fieldLabel
                text: qsTr("Overrides macOS %1 — Tamsel will intercept this keystroke before macOS")
                          .arg(column.row.systemShortcut)
                color: Theme.yellow
                wrapMode: Text.Wrap
            }
        }
    }
}

import QtQuick
import Tamsel

// What a combo is called and does, and the line for a system shortcut that it takes over.
Column {
    id: column

    required property comboRow row

    readonly property string title: row.title || qsTr("Untitled")
    readonly property alias link: titleLink

    signal linkOpened()

    FontMetrics {
        id: metrics
        font: Theme.font(Theme.rowTitle)
    }

    Row {
        width: parent.width
        spacing: 8

        Label {
            id: title
            width: Math.min(implicitWidth, parent.width - titleLink.width - pill.width
                                           - 2 * parent.spacing)
            type: Theme.rowTitle
            text: column.title
            color: column.row.title ? Theme.text : Theme.textMuted
            // A script that another font has to draw keeps the line's baseline.
            transform: Translate { y: Math.min(0, Math.round(metrics.ascent - title.baselineOffset)) }
        }
        Link {
            id: titleLink
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? implicitWidth : 0
            visible: column.row.linkText
            text: column.row.linkText
            about: column.title
            onClicked: column.linkOpened()
        }
        StatusPill {
            id: pill
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? implicitWidth : 0
            visible: column.row.holdMode
            text: qsTr("Hold mode")
        }
    }
    ComboActionLine {
        width: parent.width
        symbol: column.row.holdMode ? "arrow.down" : ""
        action: column.row.action
        value: column.row.value
    }
    ComboActionLine {
        width: parent.width
        visible: column.row.holdMode
        symbol: "arrow.up"
        action: column.row.upAction
        value: column.row.upValue
    }
    Item {
        width: parent.width
        height: message.height + 4
        visible: column.row.systemShortcut

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

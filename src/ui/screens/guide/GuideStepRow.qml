import QtQuick
import QtQuick.Templates as T
import Tamsel

// Something to do, with its command where there is one.
Column {
    id: step

    required property guideStep row

    signal copied()

    spacing: 6

    Label {
        width: parent.width
        text: step.row.text
        wrapMode: Text.Wrap
    }
    Rectangle {
        width: parent.width
        height: Math.max(Theme.fieldHeight, command.contentHeight + 16)
        visible: step.row.command
        radius: Theme.radiusField
        color: Theme.surfaceAlt
        border { width: 1; color: Theme.border }

        T.TextArea {
            id: command
            x: 12
            width: copy.x - x - 8
            height: parent.height
            verticalAlignment: TextEdit.AlignVCenter
            readOnly: true
            selectByMouse: true
            activeFocusOnTab: false
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            font: Theme.font(Theme.mono)
            color: Theme.text
            selectionColor: Theme.accentFill
            selectedTextColor: Theme.textOnAccent
            text: step.row.command
            Accessible.name: step.row.command
        }
        IconButton {
            id: copy
            anchors { right: parent.right; rightMargin: 1; verticalCenter: parent.verticalCenter }
            symbol: "copy"
            text: qsTr("Copy the command")
            onClicked: step.copied()
        }
    }
}

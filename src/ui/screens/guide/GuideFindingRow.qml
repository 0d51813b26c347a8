import QtQuick
import Tamsel

// Something that was looked at, and whether it is in order.
Item {
    id: finding

    required property guideFinding row

    height: text.height

    Icon {
        y: 1
        symbol: finding.row.ok ? "checkmark.circle.fill" : "xmark.circle.fill"
        size: Theme.iconSmall
        color: finding.row.ok ? Theme.green : Theme.red
    }
    Label {
        id: text
        x: 26
        width: parent.width - x
        text: finding.row.text
        wrapMode: Text.Wrap
        Accessible.description: finding.row.ok ? qsTr("In order") : qsTr("Missing")
    }
}

import QtQuick
import Tamsel

// What is wrong with the field above; takes no room while nothing is.
Item {
    id: line

    property string text

    implicitHeight: text ? Math.max(message.implicitHeight, Theme.iconInline) : 0
    visible: text

    Icon {
        y: 1
        symbol: "xmark.circle.fill"
        size: Theme.iconInline
        color: Theme.red
    }
    Label {
        id: message
        x: 20
        width: parent.width - x
        type: Theme.small
        text: line.text
        color: Theme.red
        wrapMode: Text.Wrap
        Accessible.ignored: !line.visible
    }
}

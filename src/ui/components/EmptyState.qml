import QtQuick
import Tamsel

// What a card or page shows in place of its contents.
Column {
    id: state

    property alias symbol: icon.symbol
    property alias text: line.text

    spacing: Theme.cardGap

    Icon {
        id: icon
        anchors.horizontalCenter: parent.horizontalCenter
        visible: symbol
        size: Theme.iconEmpty
    }
    Label {
        id: line
        width: state.width
        type: Theme.emptyLine
        color: Theme.textMuted
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}

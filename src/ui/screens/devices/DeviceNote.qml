import QtQuick
import Tamsel

// A line of advice with its icon.
Item {
    id: note

    property string symbol
    property string text

    height: label.height

    Icon {
        x: 2
        y: 1
        symbol: note.symbol
        size: Theme.iconSmall
    }
    Label {
        id: label
        x: 30
        width: parent.width - x
        text: note.text
        color: Theme.textMuted
        wrapMode: Text.Wrap
    }
}

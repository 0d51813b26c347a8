import QtQuick
import Tamsel

// What a combo does on press or on release: the action's type and value.
Row {
    id: line

    required property string action
    required property string value
    // Which of two it is; nothing where there is only one.
    property string symbol

    height: 17
    spacing: 8

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        visible: line.symbol
        symbol: line.symbol
        size: Theme.iconInline - 2
    }
    Label {
        id: type
        anchors.verticalCenter: parent.verticalCenter
        leftPadding: line.symbol ? -2 : 0
        type: Theme.small
        text: line.action
        color: Theme.textMuted
    }
    Label {
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, line.width - x)
        type: Theme.mono
        text: line.value
        color: Theme.textMuted
    }
}

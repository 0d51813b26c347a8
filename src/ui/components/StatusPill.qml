import QtQuick
import Tamsel

// A state in one word, with an icon where the word alone would not do.
Rectangle {
    id: pill

    property string text
    property string symbol
    property color ink: Theme.accent
    property color tint: Theme.accentSoft

    implicitWidth: line.width + 16
    implicitHeight: Theme.pillHeight
    radius: height / 2
    color: tint
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !visible

    Row {
        id: line
        anchors.centerIn: parent
        spacing: 5

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: pill.symbol
            symbol: pill.symbol
            size: 12
            color: pill.ink
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            type: Theme.pill
            text: pill.text
            color: pill.ink
            Accessible.ignored: true
        }
    }
}

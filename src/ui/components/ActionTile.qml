import QtQuick
import QtQuick.Templates as T
import Tamsel

// A button as large as a card: a tile with an icon, a title, a line below it where there is one.
T.AbstractButton {
    id: tile

    property string symbol
    property string line
    property string keyHint
    property bool dangerous: false

    readonly property color ink: dangerous ? Theme.red : Theme.text

    implicitHeight: 86
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: line
    Accessible.onPressAction: tile.clicked()
    Keys.onReturnPressed: tile.clicked()
    Keys.onEnterPressed: tile.clicked()

    contentItem: Item {
        Rectangle {
            x: Theme.cardPadding + 1
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.cardTile
            height: width
            radius: 9
            color: tile.dangerous ? Theme.redSoft : Theme.graySoft

            Icon {
                anchors.centerIn: parent
                symbol: tile.symbol
                size: Theme.iconRow
                color: tile.dangerous ? Theme.red : Theme.textMuted
            }
        }
        Column {
            x: Theme.cardPadding + 1 + Theme.cardTile + 14
            width: parent.width - x - Theme.cardPadding - (tile.keyHint ? Theme.keyHint : 0)
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width
                type: Theme.rowTitle
                text: tile.text
                color: tile.ink
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text
                text: tile.line
                color: Theme.textMuted
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
        KeyHint {
            anchors { right: parent.right; rightMargin: Theme.cardPadding }
            anchors.verticalCenter: parent.verticalCenter
            visible: tile.keyHint
            key: tile.keyHint
            ink: Theme.text
            outline: Theme.borderStrong
        }
    }
    background: Rectangle {
        radius: Theme.radiusCard
        color: tile.down ? Theme.pressed : tile.hovered ? Theme.hover : Theme.surface
        border { width: 1; color: Theme.borderStrong }
        Behavior on color { ColorAnimation { duration: Theme.motion } }

        FocusRing { visible: tile.visualFocus; parentRadius: parent.radius }
    }
}

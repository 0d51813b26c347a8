import QtQuick
import QtQuick.Templates as T
import Tamsel

// One ticket of the list. One Tab stop for the whole list; Up and Down move inside it.
T.ItemDelegate {
    id: view

    required property ticketRow row
    required property int index
    property bool selected: false
    property bool isStop: false

    height: Theme.ticketRowHeight + 4
    leftInset: 6
    rightInset: 6
    bottomInset: 4
    hoverEnabled: true
    focusPolicy: isStop || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
    Accessible.name: `${row.title}, ${row.time}, ${pill.text}`
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: view.clicked()
    Keys.onReturnPressed: view.clicked()
    Keys.onEnterPressed: view.clicked()

    background: Rectangle {
        radius: Theme.radiusField
        color: view.selected ? Theme.accentSoft : view.down ? Theme.pressed
             : view.hovered ? Theme.hover : Theme.none

        Rectangle {
            x: 4
            anchors.verticalCenter: parent.verticalCenter
            width: 3
            height: 30
            radius: 1.5
            visible: view.selected
            color: Theme.accent
        }
        FocusRing { visible: view.activeFocus; gap: -border.width }
    }

    Icon {
        x: 19
        y: 12
        symbol: view.row.symbol
        size: Theme.iconInline
    }
    Label {
        x: 41
        y: 8
        width: parent.width - x - 16
        type: Theme.formLabel
        lineHeight: 20
        text: view.row.title
        Accessible.ignored: true
    }
    Label {
        x: 41
        width: pill.x - x - 8
        anchors.verticalCenter: pill.verticalCenter
        type: Theme.small
        text: view.row.time
        color: Theme.textMuted
        Accessible.ignored: true
    }
    TicketPill {
        id: pill
        anchors { right: parent.right; rightMargin: 17 }
        y: 31
        width: Math.min(implicitWidth, 120)
        clip: implicitWidth > 120
        status: view.row.status
        Accessible.ignored: true
    }
}

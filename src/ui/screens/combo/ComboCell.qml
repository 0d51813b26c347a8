import QtQuick
import Tamsel

// A row's place in the list: its slice of the card, and the section's title above the first
// built-in one.
RowCell {
    id: cell

    required property comboRow row
    property int cardWidth
    // How many rows the list has, and how many of the first are the user's.
    property int total
    property int ownRows

    readonly property ComboRowV view: content
    readonly property bool isFirst: index === 0 || index === ownRows
    readonly property bool isLast: index === ownRows - 1 || index === total - 1
    readonly property bool titled: index === ownRows

    rowId: row.id
    stops: content.stops
    height: heading.height + content.height

    Item {
        id: heading
        x: slice.x
        width: slice.width
        height: cell.titled ? (cell.index > 0 ? Theme.sectionHeight : 30) : 0
        visible: cell.titled

        Label {
            x: 4
            anchors { bottom: parent.bottom; bottomMargin: 8 }
            type: Theme.section
            text: qsTr("Built-in · %1").arg(cell.total - cell.ownRows)
            color: Theme.textMuted
            Accessible.role: Accessible.Heading
            Accessible.ignored: !visible
        }
    }
    CardSlice {
        id: slice
        x: Math.round((parent.width - width) / 2)
        y: heading.height
        width: cell.cardWidth
        height: content.height
        isFirst: cell.isFirst
        isLast: cell.isLast
    }
    ComboRowV {
        id: content
        x: slice.x
        y: heading.height
        width: slice.width
        height: implicitHeight
        row: cell.row
    }
}

import QtQuick
import Tamsel

// One key event. The widths of the columns are shares of the table's.
Item {
    id: cell

    required property keyViewerEvent row
    required property int index
    property list<real> shares

    readonly property color motion: row.keyDown ? Theme.green : Theme.orange
    readonly property color actionInk: row.action === 1 ? Theme.red
                                     : row.action === 2 ? Theme.blue
                                     : row.action === 3 ? Theme.purple : Theme.textMuted

    function startOf(column: int): real {
        let share = 0;
        for (let i = 0; i < column; ++i)
            share += shares[i];
        return share * width;
    }

    function described(): string {
        const text = `${row.eventType}, ${row.keyName}, ${device.text}, ${row.actionName}`;
        return row.outputName ? text + ", " + row.outputName : text;
    }

    component Cell: Label {
        property KeyViewerRow owner: parent as KeyViewerRow
        property int column
        x: 12 + owner.startOf(column)
        width: owner.shares[column] * owner.width - 12
        anchors.verticalCenter: parent.verticalCenter
    }

    implicitHeight: Theme.viewerRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: described()

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.border
    }
    Icon {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        symbol: cell.row.keyDown ? "arrow.down" : "arrow.up"
        size: Theme.iconInline
        color: cell.motion
    }
    Cell { column: 0; leftPadding: 20; text: cell.row.eventType; color: cell.motion }
    Cell { column: 1; type: Theme.mono; text: cell.row.keyName }
    Cell {
        id: device
        column: 2
        text: cell.row.fromApple ? qsTr("Apple") : qsTr("Other")
        color: Theme.textMuted
    }
    Cell { column: 3; text: cell.row.actionName; color: cell.actionInk }
    Cell { column: 4; type: Theme.mono; text: cell.row.outputName }
}

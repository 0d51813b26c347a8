import QtQuick
import Tamsel

// A part of the combo editor, divided from the one above it.
Column {
    id: section

    property bool divided: true
    property int gap: 10
    default property alias contents: body.data

    width: parent ? parent.width : 0

    Rectangle {
        width: parent.width
        height: section.divided ? 1 : 0
        color: Theme.border
    }
    Column {
        id: body
        x: Theme.dialogPadding
        width: parent.width - 2 * x
        topPadding: section.divided ? 13 : 0
        bottomPadding: 13
        spacing: section.gap
    }
}

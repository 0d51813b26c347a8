import QtQuick
import Tamsel

// A row's slice of a card that goes on in the rows around it: a rounded rectangle that reaches
// beyond it, and the line between two rows.
Item {
    id: slice

    property bool isFirst: false
    property bool isLast: false

    clip: !isFirst || !isLast

    Card {
        y: slice.isFirst ? 0 : -Theme.radiusCard
        width: parent.width
        height: parent.height + (slice.isFirst ? 0 : Theme.radiusCard)
                + (slice.isLast ? 0 : Theme.radiusCard)
    }
    Rectangle {
        x: 1
        width: parent.width - 2
        height: 1
        visible: !slice.isFirst
        color: Theme.border
    }
}

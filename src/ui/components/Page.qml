import QtQuick
import QtQuick.Templates as T
import Tamsel

// A screen whose contents scroll as one. What takes the keyboard focus scrolls into view.
PageFrame {
    id: page

    default property alias contents: column.data

    function scrollToTop(): void {
        flick.contentY = 0;
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(column, 0, 0).y - Theme.cardPadding;
        const bottom = top + item.height + 2 * Theme.cardPadding;
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top);
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(bottom - flick.height, flick.contentHeight - flick.height);
    }

    scroller: flick
    onFocusMoved: item => reveal(item)

    body: Flickable {
        id: flick
        anchors.fill: parent
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: column.implicitHeight
        T.ScrollBar.vertical: ScrollBar {}

        Column {
            id: column
            x: Math.round((parent.width - width) / 2)
            width: page.contentWidth
            topPadding: page.title ? 0 : 24
            bottomPadding: 24
        }
    }
}

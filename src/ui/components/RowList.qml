import QtQuick
import QtQuick.Templates as T
import Tamsel

// Rows of which only those near the visible part exist. Tab goes through them in their order on the
// screen. A row that is scrolled out of existence leaves the keyboard to the list, where it does
// nothing; Tab goes back to that row.
ListView {
    id: list

    required property GadgetListModel rows
    required property int cardWidth

    // What had the keyboard last, of rows that are not there any more.
    property string awayRow
    property int awayIndex: 0
    property int awayStop: 0

    signal leftForward()
    signal leftBackward()

    // Gives the keyboard to a control of a row, scrolling there.
    function focusRow(index: int, stop: int, step: int): void {
        if (index < 0) {
            leftBackward();
        } else if (index >= count) {
            leftForward();
        } else {
            positionViewAtIndex(index, ListView.Contain);
            forceLayout();
            const cell = itemAtIndex(index) as RowCell;
            if (cell)
                cell.focusStop(stop, step);
        }
    }
    function focusFirst(): void {
        focusRow(0, 0, 1);
    }
    function focusRowAgain(): void {
        const place = rows.indexOf(awayRow);
        focusRow(place >= 0 ? place : Math.min(awayIndex, count - 1), awayStop, 1);
    }

    function takeKeyboardFrom(cell: RowCell): void {
        awayRow = cell.rowId;
        awayIndex = cell.index;
        awayStop = Math.max(0, cell.focusedStop());
        cell.focus = false;
        forceActiveFocus(Qt.OtherFocusReason);
    }

    // Scrolls to the row that holds an item, or to what stands above the rows.
    function reveal(item: Item): void {
        for (let inside = item; inside; inside = inside.parent) {
            const cell = inside as RowCell;
            if (cell) {
                positionViewAtIndex(cell.index, ListView.Contain);
                return;
            }
            if (inside === contentItem)
                contentY = originY - topMargin;
        }
    }

    // The order on the screen, not that in which the rows came into being.
    function tab(cell: RowCell, step: int): void {
        if (!cell.focusStop(cell.focusedStop() + step, step))
            focusRow(cell.index + step, step > 0 ? 0 : cell.stops.length - 1, step);
    }

    model: rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    reuseItems: true
    cacheBuffer: 400
    footer: Item { height: 24 }
    Accessible.role: Accessible.List
    Keys.onTabPressed: focusRowAgain()
    Keys.onBacktabPressed: focusRowAgain()
    T.ScrollBar.vertical: ScrollBar {}
}

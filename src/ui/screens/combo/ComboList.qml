import QtQuick
import QtQuick.Templates as T
import Tamsel

// The rows of the combo screen in two cards, the user's and the built-in ones. Only the rows near
// the visible part exist.
ListView {
    id: list

    required property ComboVM combo
    required property GadgetListModel rows
    required property int cardWidth
    // How many rows are the user's; the others follow them.
    readonly property int ownRows: combo.ownCount

    signal editRequested(string id)
    signal leftForward()
    signal leftBackward()

    function rowAt(index: int): ComboRowV {
        const cell = itemAtIndex(index) as ComboCell;
        return cell ? cell.view : null;
    }

    // Gives the keyboard to a control of a row, scrolling there.
    function focusRow(index: int, stop: int, step: int): void {
        if (index < 0) {
            leftBackward();
        } else if (index >= count) {
            leftForward();
        } else {
            positionViewAtIndex(index, ListView.Contain);
            forceLayout();
            const row = rowAt(index);
            if (row)
                row.focusStop(stop, step);
        }
    }
    function focusFirst(): void {
        focusRow(0, 0, 1);
    }
    function remove(index: int, id: string): void {
        combo.deleteCombo(id);
        focusRow(Math.min(index, count - 1), 4, -1);
    }

    // Scrolls to the row that holds an item, or to what stands above the rows.
    function reveal(item: Item): void {
        for (let inside = item; inside; inside = inside.parent) {
            const cell = inside as ComboCell;
            if (cell) {
                positionViewAtIndex(cell.index, ListView.Contain);
                return;
            }
            if (inside === contentItem)
                contentY = originY - topMargin;
        }
    }

    // The order on the screen, not that in which the rows came into being.
    function tab(cell: ComboCell, step: int): void {
        if (!cell.view.focusStop(cell.view.focusedStop() + step, step))
            focusRow(cell.index + step, step > 0 ? 0 : cell.view.stops.length - 1, step);
    }

    model: rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    reuseItems: true
    cacheBuffer: 400
    footer: Item { height: 24 }
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Combos")
    T.ScrollBar.vertical: ScrollBar {}

    delegate: ComboCell {
        id: cell

        readonly property ComboList list: ListView.view as ComboList

        width: ListView.view ? ListView.view.width : 0
        cardWidth: list ? list.cardWidth : 0
        total: list ? list.count : 0
        ownRows: list ? list.ownRows : 0
        onTabbed: step => list.tab(cell, step)
        // What waits for its next row is on no screen, for assistive technology either.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true

        Connections {
            target: cell.view
            function onEditRequested(): void { cell.list.editRequested(cell.row.id); }
            function onRemoveRequested(): void { cell.list.remove(cell.index, cell.row.id); }
            function onToggled(on: bool): void { cell.list.combo.setEnabled(cell.row.id, on); }
            function onLinkOpened(): void { cell.list.combo.openLink(cell.row.id); }
        }
    }
}

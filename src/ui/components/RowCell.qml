import QtQuick

// A row of a RowList, which makes its items and uses them again for other rows. The keyboard belongs
// to the row: an item that is put away gives it back to the list.
FocusScope {
    id: cell

    required property int index
    // Which row it is, whatever item shows it.
    property string rowId
    // The Tab stops from left to right; those that are not there are passed over.
    property var stops: []

    // The RowList; not by its type, which knows this one.
    readonly property var rowList: ListView.view

    // Gives the keyboard to the first stop from `place` on in steps of `step`; false at the end.
    function focusStop(place: int, step: int): bool {
        for (let i = place; i >= 0 && i < stops.length; i += step) {
            if (stops[i] && stops[i].visible) {
                stops[i].forceActiveFocus(step > 0 ? Qt.TabFocusReason : Qt.BacktabFocusReason);
                return true;
            }
        }
        return false;
    }
    function focusedStop(): int {
        return stops.findIndex(stop => stop && stop.activeFocus);
    }

    // What waits for its next row is on no screen, for assistive technology either.
    ListView.onPooled: {
        if (activeFocus)
            rowList.takeKeyboardFrom(cell);
        visible = false;
    }
    ListView.onReused: visible = true
    Keys.onTabPressed: rowList.tab(cell, 1)
    Keys.onBacktabPressed: rowList.tab(cell, -1)
}

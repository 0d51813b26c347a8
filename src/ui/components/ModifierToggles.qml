import QtQuick
import Tamsel

// A toggle for each modifier of `names`, four to a row. One Tab stop; the arrow keys move inside.
Grid {
    id: toggles

    required property list<string> names
    // The modifiers that are on.
    property list<string> chosen
    property int current: 0

    signal toggled(string name)

    function move(step: int): void {
        const next = current + step;
        if (next < 0 || next >= names.length)
            return;
        current = next;
        (cells.itemAt(next) as Item).forceActiveFocus(Qt.TabFocusReason);
    }

    columns: 4
    spacing: 6
    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)
    Keys.onUpPressed: move(-columns)
    Keys.onDownPressed: move(columns)

    Repeater {
        id: cells
        model: toggles.names

        ToggleButton {
            required property string modelData
            required property int index

            width: (toggles.width - 3 * toggles.spacing) / toggles.columns
            text: KeyLegend.of(modelData)
            on: toggles.chosen.includes(modelData)
            focusPolicy: index === toggles.current ? Qt.StrongFocus : Qt.ClickFocus
            onClicked: toggles.toggled(modelData)
            onActiveFocusChanged: if (activeFocus) toggles.current = index
        }
    }
}

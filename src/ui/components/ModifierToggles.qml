import QtQuick
import Tamsel

// A toggle for each modifier of `names`, four to a row. One Tab stop; the arrow keys move inside.
Grid {
    id: toggles

    required property list<string> names
    // The modifiers that are on.
    property var chosen: []
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

            readonly property ModifierToggles owner: parent as ModifierToggles

            width: owner ? (owner.width - 3 * owner.spacing) / owner.columns : 0
            text: KeyLegend.of(modelData)
            on: owner && owner.chosen.includes(modelData)
            focusPolicy: owner && index === owner.current ? Qt.StrongFocus : Qt.ClickFocus
            onClicked: owner.toggled(modelData)
            onActiveFocusChanged: if (activeFocus) owner.current = index
        }
    }
}

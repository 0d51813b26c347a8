import QtQuick
import Tamsel

// A card of mapping rows; gone while it has none.
Card {
    id: card

    required property GadgetListModel model
    required property Recording recording
    property bool readOnly: false

    signal removeRequested(string id, int control)
    signal toggled(string id, bool on)
    signal fromPicked(string id, int code)
    signal toPicked(string id, int code)

    // Gives the keyboard to a control of a row, one of MappingRowV's.
    function focusRow(index: int, control: int): void {
        const row = rows.itemAt(index) as MappingRowV;
        if (row)
            row.focusControl(control);
    }

    height: rowColumn.height + 2
    visible: model.count > 0

    Column {
        id: rowColumn
        x: 1
        y: 1
        width: parent.width - 2

        Repeater {
            id: rows
            model: card.model

            MappingRowV {
                readonly property MappingCard owner: parent ? parent.parent as MappingCard : null

                width: parent ? parent.width : 0
                readOnly: owner && owner.readOnly
                recording: owner ? owner.recording : null
                onRemoveRequested: control => owner.removeRequested(row.id, control)
                onToggled: on => owner.toggled(row.id, on)
                onFromPicked: code => owner.fromPicked(row.id, code)
                onToPicked: code => owner.toPicked(row.id, code)
            }
        }
    }
}

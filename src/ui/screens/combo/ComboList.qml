import QtQuick
import Tamsel

// The rows of the combo screen in two cards, the user's and the built-in ones.
RowList {
    id: list

    required property ComboVM combo
    // How many rows are the user's; the others follow them.
    readonly property int ownRows: combo.ownCount

    signal editRequested(string id)

    function remove(index: int, id: string): void {
        combo.deleteCombo(id);
        focusRow(Math.min(index, count - 1), 4, -1);
    }

    Accessible.name: qsTr("Combos")

    delegate: ComboCell {
        id: cell

        readonly property ComboList list: ListView.view as ComboList

        width: ListView.view ? ListView.view.width : 0
        cardWidth: list ? list.cardWidth : 0
        total: list ? list.count : 0
        ownRows: list ? list.ownRows : 0

        Connections {
            target: cell.view
            function onEditRequested(): void { cell.list.editRequested(cell.row.id); }
            function onRemoveRequested(): void { cell.list.remove(cell.index, cell.row.id); }
            function onToggled(on: bool): void { cell.list.combo.setEnabled(cell.row.id, on); }
            function onLinkOpened(): void { cell.list.combo.openLink(cell.row.id); }
        }
    }
}

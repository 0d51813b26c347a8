import QtQuick
import Tamsel

// The user's mappings and, below them, the built-in ones that they do not cover.
Page {
    id: page

    required property MappingVM mapping

    function add(): void {
        const id = mapping.addMapping();
        scrollToTop();
        userCard.focusRow(userRows.indexOf(id), MappingRowV.From);
    }

    function remove(id: string, control: int): void {
        const place = userRows.indexOf(id);
        mapping.deleteMapping(id);
        if (userRows.count > 0)
            userCard.focusRow(Math.min(place, userRows.count - 1), control);
        else
            addButton.forceActiveFocus(Qt.TabFocusReason);
    }

    function promote(id: string): void {
        mapping.setEnabled(id, true);
        if (builtInRows.indexOf(id) < 0)
            userCard.focusRow(0, MappingRowV.Switch);
    }

    title: qsTr("Mapping")
    onShownChanged: if (shown) mapping.reload()
    onAddRequested: add()
    Component.onCompleted: mapping.reload()

    actions: Button {
        id: addButton
        kind: Button.Primary
        text: qsTr("Add Mapping")
        symbol: "add"
        keyHint: "A"
        onClicked: page.add()
    }

    GadgetListModel {
        id: userRows
        source: page.mapping
        list: "userRows"
        key: "id"
    }
    GadgetListModel {
        id: builtInRows
        source: page.mapping
        list: "builtInRows"
        key: "id"
    }

    MappingCard {
        id: userCard
        width: parent.width
        model: userRows
        onRemoveRequested: (id, control) => page.remove(id, control)
        onToggled: (id, on) => page.mapping.setEnabled(id, on)
        onFromPicked: (id, code) => page.mapping.setFrom(id, code)
        onToPicked: (id, code) => page.mapping.setTo(id, code)
    }

    Item {
        width: parent.width
        height: Theme.sectionHeight
        visible: builtInRows.count > 0

        Label {
            x: 4
            y: 18
            type: Theme.section
            text: qsTr("Built-in · %1").arg(builtInRows.count)
            color: Theme.textMuted
            Accessible.role: Accessible.Heading
            Accessible.ignored: !visible
        }
    }

    MappingCard {
        width: parent.width
        model: builtInRows
        readOnly: true
        onToggled: (id, on) => {
            if (on)
                page.promote(id);
        }
    }
}

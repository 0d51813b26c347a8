import QtQuick
import Tamsel

// The user's mappings and, below them, the built-in ones that they do not cover.
Page {
    id: page

    required property Screens screens
    readonly property MappingVM mapping: screens.mapping
    readonly property PermissionMgr permission: screens.permission
    readonly property Recording recording: Recording { recorder: page.screens.keyRecorder }

    function look(): void {
        mapping.reload();
        permission.checkPermission();
    }

    function add(): void {
        const id = mapping.addMapping();
        scrollToTop();
        userCard.focusRow(userRows.indexOf(id), MappingRowV.RecordFrom);
    }

    function remove(id: string, control: int): void {
        const place = userRows.indexOf(id);
        mapping.deleteMapping(id);
        if (userRows.count > 0)
            userCard.focusRow(Math.min(place, userRows.count - 1), control);
        else
            addButton.forceActiveFocus(Qt.TabFocusReason);
    }

    // After a change of a built-in row: it is the user's now.
    function follow(id: string, control: int): void {
        const place = userRows.indexOf(id);
        if (place >= 0)
            userCard.focusRow(place, control);
    }

    title: qsTr("Mapping")
    onShownChanged: if (shown) look()
    onAddRequested: add()
    Component.onCompleted: look()

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

    PermissionBanner {
        id: banner
        width: parent.width
        visible: !page.permission.hasPermission
        onRequestPermission: page.permission.requestPermission()
    }
    Item { width: 1; height: 14; visible: banner.visible }
    MappingCard {
        id: userCard
        width: parent.width
        model: userRows
        recording: page.recording
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
        recording: page.recording
        readOnly: true
        onToggled: (id, on) => page.follow(page.mapping.setEnabled(id, on), MappingRowV.Switch)
        onFromPicked: (id, code) => page.follow(page.mapping.setFrom(id, code),
                                                MappingRowV.RecordFrom)
        onToPicked: (id, code) => page.follow(page.mapping.setTo(id, code), MappingRowV.RecordTo)
    }
}

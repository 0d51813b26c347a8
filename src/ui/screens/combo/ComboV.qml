import QtQuick
import Tamsel

// The user's combos and, below them, the built-in ones that they do not cover.
PageFrame {
    id: page

    required property Screens screens
    readonly property ComboVM combo: screens.combo
    readonly property PermissionMgr permission: screens.permission
    readonly property Recording recording: Recording { recorder: page.screens.comboRecorder }

    // The row that is being edited; none while a new combo is.
    property string editedRow

    function look(): void {
        combo.reload();
        permission.checkPermission();
    }

    function add(): void {
        editedRow = "";
        combo.addCombo();
    }

    function edit(id: string): void {
        editedRow = id;
        combo.edit(id);
    }

    function save(): void {
        const id = combo.save();
        if (id)
            list.focusRow(comboRows.indexOf(id), 3, 1);
    }

    function cancel(): void {
        const opener = (dialog.item as Dialog).opener;
        combo.cancel();
        const row = editedRow ? comboRows.indexOf(editedRow) : -1;
        if (row >= 0)
            list.focusRow(row, 3, 1);
        else if (opener)
            opener.forceActiveFocus(Qt.PopupFocusReason);
    }

    title: qsTr("Combo")
    scroller: list
    onShownChanged: if (shown) look()
    onAddRequested: add()
    onFocusMoved: item => list.reveal(item)
    Component.onCompleted: look()
    Component.onDestruction: combo.cancel()

    actions: Button {
        id: addButton
        kind: Button.Primary
        text: qsTr("Add Combo")
        symbol: "add"
        keyHint: "A"
        onClicked: page.add()
        Keys.onTabPressed: {
            if (banner.visible)
                banner.focusButton(Qt.TabFocusReason);
            else
                list.focusFirst();
        }
    }

    GadgetListModel {
        id: comboRows
        source: page.combo
        list: "rows"
        key: "id"
    }
    ComboList {
        id: list
        anchors.fill: parent
        combo: page.combo
        rows: comboRows
        cardWidth: page.contentWidth
        topMargin: banner.visible ? banner.height + 14 : 0
        onTopMarginChanged: if (contentY <= originY) contentY = originY - topMargin
        onEditRequested: id => page.edit(id)
        onLeftForward: end.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        onLeftBackward: {
            if (banner.visible)
                banner.focusButton(Qt.BacktabFocusReason);
            else
                addButton.forceActiveFocus(Qt.BacktabFocusReason);
        }
    }
    // Scrolls with the rows, above the first one.
    PermissionBanner {
        id: banner
        parent: list.contentItem
        x: Math.round((list.width - width) / 2)
        y: list.originY - height - 14
        width: page.contentWidth
        visible: !page.permission.hasPermission
        onRequestPermission: page.permission.requestPermission()
        Keys.onTabPressed: list.focusFirst()
        Keys.onBacktabPressed: addButton.forceActiveFocus(Qt.BacktabFocusReason)
    }
    Item { id: end }

    Loader {
        id: dialog

        function show(): void {
            if (page.combo.editor)
                setSource("../comboeditor/ShortcutEditView.qml",
                          { editor: page.combo.editor, recording: page.recording });
            else
                source = "";
        }
    }
    Connections {
        target: page.combo
        function onEditorChanged(): void { dialog.show(); }
    }
    Connections {
        target: dialog.item
        function onSaved(): void { page.save(); }
        function onCanceled(): void { page.cancel(); }
    }
}

import QtQuick
import Tamsel

// The main window: the sidebar and the screen that it chose.
Window {
    id: root

    required property MainVM main
    required property MappingVM mapping
    required property ConnectionVM connection

    // Plain keys are commands only where nobody is typing; an open menu has its filter focused.
    readonly property bool plainKeys: !(activeFocusItem instanceof TextInput
                                        || activeFocusItem instanceof TextEdit)

    function switchSide(): void {
        if (!sidebar.activeFocus) {
            sidebar.focusSelected(Qt.TabFocusReason);
            return;
        }
        const page = pages.item as Item;
        page.forceActiveFocus(Qt.TabFocusReason);
        // Nothing on it had the focus before: its first control.
        if (activeFocusItem === page)
            page.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    function showPage(): void {
        switch (main.selected) {
        case MainVM.Dashboard:
            pages.setSource("dash/DashV.qml", { connection: root.connection });
            break;
        case MainVM.Mapping:
            pages.setSource("mapping/MappingV.qml", { mapping: root.mapping });
            break;
        default:
            pages.setSource("later/LaterV.qml", { title: sidebar.title });
        }
    }

    component PageShortcut: Shortcut {
        required property MainVM main
        required property int page

        sequence: String(page + 1)
        onActivated: main.selected = page
    }

    title: qsTr("Tamsel")
    width: 1000
    height: 700
    minimumWidth: 820
    minimumHeight: 620
    color: Theme.windowBg
    Component.onCompleted: showPage()

    Binding {
        target: Theme
        property: "compact"
        value: root.width < Theme.compactBelow
    }

    Shortcut {
        sequence: "F6"
        onActivated: root.switchSide()
    }
    Shortcut {
        sequence: "A"
        enabled: root.plainKeys
        onActivated: root.main.add()
    }
    PageShortcut { page: MainVM.Dashboard; main: root.main; enabled: root.plainKeys }
    PageShortcut { page: MainVM.Mapping; main: root.main; enabled: root.plainKeys }
    PageShortcut { page: MainVM.Combo; main: root.main; enabled: root.plainKeys }
    PageShortcut { page: MainVM.Devices; main: root.main; enabled: root.plainKeys }
    PageShortcut { page: MainVM.About; main: root.main; enabled: root.plainKeys }

    Connections {
        target: root.main
        function onSelectedChanged(): void { root.showPage(); }
        function onAddRequested(): void { (pages.item as Page).addRequested(); }
    }

    Sidebar {
        id: sidebar
        width: Theme.sidebarWidth
        height: parent.height
        model: root.main
        focus: true
    }

    Loader {
        id: pages
        anchors { fill: parent; leftMargin: sidebar.width }
    }
}

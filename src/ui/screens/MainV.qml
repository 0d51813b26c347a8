import QtQuick
import Tamsel

// The main window: the sidebar and the screen that it chose.
Window {
    id: root

    required property MainVM main
    required property MappingVM mapping
    required property ConnectionVM connection

    // Plain keys are commands only where nobody is typing; a menu has its filter focused.
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

    title: qsTr("Tamsel")
    width: 1000
    height: 700
    minimumWidth: 820
    minimumHeight: 620
    color: Theme.windowBg

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
    Instantiator {
        model: sidebar.entries
        delegate: Shortcut {
            required property int index
            sequence: String(index + 1)
            enabled: root.plainKeys
            onActivated: root.main.selected = index
        }
    }

    Connections {
        target: root.main
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
        sourceComponent: root.main.selected === MainVM.Dashboard ? dash
                       : root.main.selected === MainVM.Mapping ? mappings : later
    }

    Component {
        id: dash
        DashV { connection: root.connection }
    }
    Component {
        id: mappings
        MappingV { mapping: root.mapping }
    }
    Component {
        id: later
        LaterV { title: sidebar.entries[root.main.selected].title }
    }
}

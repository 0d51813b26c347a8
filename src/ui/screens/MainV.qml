import QtQuick
import Tamsel

// The main window: the sidebar and the screen that it chose.
Window {
    id: root

    required property MainVM main
    required property MappingVM mapping
    required property ComboVM combo
    required property DashboardVM dashboard
    required property DeviceMgrVM devices
    required property SettingsGuideVM guide
    required property PermissionMgr permission
    required property KeyRecorderVM keyRecorder
    required property KeyRecorderVM comboRecorder
    required property KeyViewerVM keyViewer
    required property KeyboardShortcutHandler screenKeys
    required property KeyboardShortcutHandler aboutKeys

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
            pages.setSource("dash/DashV.qml", { dashboard: root.dashboard, guide: root.guide });
            break;
        case MainVM.Mapping:
            pages.setSource("mapping/MappingV.qml", { mapping: root.mapping,
                                                      permission: root.permission,
                                                      recording: keyRecording });
            break;
        case MainVM.Combo:
            pages.setSource("combo/ComboV.qml", { combo: root.combo, permission: root.permission,
                                                  recording: comboRecording });
            break;
        case MainVM.Devices:
            pages.setSource("devices/DevicesV.qml", { devices: root.devices });
            break;
        default:
            pages.setSource("about/AboutV.qml", { main: root.main, keys: root.aboutKeys });
            break;
        }
    }

    title: qsTr("Tamsel")
    width: 1000
    height: 700
    minimumWidth: 820
    minimumHeight: 620
    color: Theme.windowBg
    Component.onCompleted: {
        showPage();
        const dash = pages.item as DashV;
        if (dash)
            dash.focusFirst();
    }
    onVisibleChanged: {
        if (visible) {
            screenKeys.install();
        } else {
            screenKeys.remove();
            keyViewer.close();
        }
    }

    Binding {
        target: Theme
        property: "compact"
        value: root.width < Theme.compactBelow
    }

    Shortcut {
        sequence: "F6"
        onActivated: root.switchSide()
    }
    Recording {
        id: keyRecording
        recorder: root.keyRecorder
    }
    Recording {
        id: comboRecording
        recorder: root.comboRecorder
    }

    Connections {
        target: root.main
        function onSelectedChanged(): void {
            const inSidebar = sidebar.activeFocus;
            root.showPage();
            // The keyboard was on what has gone.
            if (!inSidebar)
                (pages.item as Item).forceActiveFocus(Qt.OtherFocusReason);
        }
        function onAddRequested(): void { (pages.item as PageFrame).addRequested(); }
        function onKeyViewerRequested(): void { keyViewer.open(); }
    }

    Sidebar {
        id: sidebar
        width: Theme.sidebarWidth
        height: parent.height
        model: root.main
        focus: true
        // The screen beside it scrolls by its keys from here, too.
        Keys.forwardTo: pages.item ? [pages.item] : []
    }

    Loader {
        id: pages
        anchors { fill: parent; leftMargin: sidebar.width }
    }

    Loader {
        id: keyViewer

        function open(): void {
            if (!item)
                setSource("keyviewer/KeyViewerPopup.qml", { viewer: root.keyViewer });
            (item as KeyViewerPopup).requestActivate();
        }
        function close(): void {
            source = "";
        }
    }
    Connections {
        target: keyViewer.item
        function onClosing(): void { keyViewer.close(); }
    }
}

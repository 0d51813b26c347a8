import QtQuick
import Tamsel

// The main window: the sidebar and the screen that it chose.
Window {
    id: root

    // On the screen, as far as anybody can tell; everything in it rests meanwhile.
    readonly property bool shown: visible && visibility !== Window.Minimized && !main.isHidden

    required property MainVM main
    required property MappingVM mapping
    required property ComboVM combo
    required property DashboardVM dashboard
    required property AboutVM about
    required property DeviceMgrVM devices
    required property FeedbackVM feedback
    required property SettingsGuideVM guide
    required property PermissionMgr permission
    required property KeyRecorderVM keyRecorder
    required property KeyRecorderVM comboRecorder
    required property KeyViewerVM keyViewer
    required property KeyboardShortcutHandler screenKeys

    function switchSide(): void {
        if (!sidebar.activeFocus) {
            sidebar.focusSelected(Qt.TabFocusReason);
            return;
        }
        const page = pages.item as Item;
        if (!page)
            return;
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
            pages.setSource("about/AboutV.qml", { about: root.about, feedback: root.feedback });
            break;
        }
    }

    title: qsTr("Tamsel")
    width: 1000
    height: 700
    minimumWidth: 820
    minimumHeight: 620
    color: Theme.windowBg
    // The window stands at once; its screen comes with the next frame.
    Connections {
        id: firstFrame
        target: root
        function onFrameSwapped(): void {
            firstFrame.enabled = false;
            firstPage.start();
        }
    }
    Timer {
        id: firstPage
        interval: 0
        onTriggered: {
            if (!pages.item)
                root.showPage();
            (pages.item as PageFrame).focusFirst();
        }
    }
    onShownChanged: {
        if (shown)
            screenKeys.install();
        else
            screenKeys.remove();
    }

    Binding {
        target: Theme
        property: "compact"
        value: root.width < Theme.compactBelow
    }

    Shortcut {
        sequences: ["Ctrl+W", "Meta+W"]
        onActivated: root.close()
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
        function onIsHiddenChanged(): void {
            if (root.main.isHidden)
                keyViewer.close();
        }
        function onReopened(): void { refocus.restart(); }
        function onAddRequested(): void { (pages.item as PageFrame)?.addRequested(); }
    }
    Connections {
        target: root.about
        function onKeyViewerRequested(): void { keyViewer.open(); }
    }

    // Gives the keyboard back to what had it, once the window is there.
    Timer {
        id: refocus
        interval: 0
        onTriggered: {
            const last = root.activeFocusItem;
            if (last && last !== root.contentItem)
                last.forceActiveFocus(Qt.ActiveWindowFocusReason);
            else
                sidebar.focusSelected(Qt.ActiveWindowFocusReason);
        }
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
            (item as Window).requestActivate();
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

import QtQuick
import Tamsel

// The main window: the sidebar and the screen that it chose.
Window {
    id: root

    // On the screen, as far as anybody can tell; everything in it rests meanwhile.
    readonly property bool shown: visible && visibility !== Window.Minimized && !main.isHidden

    required property Screens screens
    readonly property MainVM main: screens.main

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
        pages.setSource(sidebar.page,
                        { screens: root.screens, shown: Qt.binding(() => root.shown) });
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
        if (shown) {
            screens.keys.install();
        } else {
            screens.keys.remove();
            // Keys that are pressed from now on are meant for other programs.
            screens.keyRecorder.cancel();
            screens.comboRecorder.cancel();
        }
    }

    KeyGate { window: root }

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
        target: root.screens.about
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
                setSource("keyviewer/KeyViewerPopup.qml", { viewer: root.screens.keyViewer });
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

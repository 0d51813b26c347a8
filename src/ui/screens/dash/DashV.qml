import QtQuick
import Tamsel

// Whether remapping works, what helps when it does not, and the switches of the application.
Page {
    id: page

    required property Screens screens
    readonly property DashboardVM dashboard: screens.dashboard
    readonly property SettingsGuideVM guide: screens.guide

    function focusFirst(): void {
        master.focusSwitch();
    }

    function showDialog(): void {
        if (dashboard.showFullQuitConfirm)
            dialog.setSource("FullQuitDialog.qml", { dashboard: dashboard });
        else if (guide.isOpen)
            dialog.setSource("../guide/SettingsGuideV.qml", { guide: guide });
        else
            dialog.close();
    }

    onShownChanged: if (!shown) dashboard.disappear()
    Component.onCompleted: showDialog()
    Component.onDestruction: dashboard.disappear()

    // On the loop's next turn: the first window is there before the start is through.
    Timer {
        interval: 0
        running: page.shown
        onTriggered: page.dashboard.appear()
    }

    StatusCards {
        width: parent.width
        dashboard: page.dashboard
    }
    MasterSwitch {
        id: master
        width: parent.width
        dashboard: page.dashboard
    }
    Item { width: 1; height: Theme.cardGap }
    SettingsCard {
        width: parent.width
        dashboard: page.dashboard
    }
    Item { width: 1; height: Theme.cardGap; visible: news.visible }
    WhatsNew {
        id: news
        width: parent.width
        dashboard: page.dashboard
    }

    Loader {
        id: dialog

        function close(): void {
            const opener = item ? (item as Dialog).opener : null;
            source = "";
            if (opener)
                opener.forceActiveFocus(Qt.PopupFocusReason);
        }
    }
    Connections {
        target: page.dashboard
        function onShowFullQuitConfirmChanged(): void { page.showDialog(); }
    }
    Connections {
        target: page.guide
        function onIsOpenChanged(): void { page.showDialog(); }
    }
}

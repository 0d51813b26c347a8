import QtQuick
import Tamsel

// Whether remapping works, what helps when it does not, and the switches of the application.
Page {
    id: page

    required property DashboardVM dashboard
    required property SettingsGuideVM guide

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

    onShownChanged: {
        if (shown)
            dashboard.appear();
        else
            dashboard.disappear();
    }
    Component.onCompleted: {
        if (shown)
            dashboard.appear();
        showDialog();
    }
    Component.onDestruction: dashboard.disappear()

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

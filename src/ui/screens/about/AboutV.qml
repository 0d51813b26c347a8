import QtQuick
import Tamsel

// The product, its updates, and four tabs: the change log, the log, feedback, and what is seldom
// wanted.
PageFrame {
    id: page

    required property Screens screens
    readonly property AboutVM about: screens.about
    readonly property FeedbackVM feedback: screens.feedback

    function showTab(): void {
        const sources = ["ChangelogTab.qml", "LogsTab.qml", "../feedback/FeedbackV.qml",
                         "AdvancedTab.qml"];
        const properties = about.selectedTab === AboutVM.Feedback ? { feedback: feedback }
                                                                  : { about: about };
        tab.setSource(sources[about.selectedTab], properties);
    }

    function showDialog(): void {
        if (about.showUninstallConfirm)
            dialog.setSource("UninstallDialog.qml", { about: about });
        else
            dialog.close();
    }

    onShownChanged: {
        if (shown)
            about.appear();
        else
            about.disappear();
    }
    Component.onCompleted: {
        if (shown)
            about.appear();
        showTab();
        showDialog();
    }
    Component.onDestruction: {
        about.disappear();
        about.showUninstallConfirm = false;
    }

    Connections {
        target: page.about
        function onSelectedTabChanged(): void { page.showTab(); }
        function onShowUninstallConfirmChanged(): void { page.showDialog(); }
    }

    Item {
        x: Math.round((parent.width - width) / 2)
        y: 24
        width: page.contentWidth
        height: parent.height - 2 * y

        AboutHead {
            id: head
            width: parent.width
            about: page.about
        }
        UpdateRow {
            id: update
            anchors { top: head.bottom; topMargin: 19 }
            width: parent.width
            about: page.about
        }
        TabBar {
            id: tabs
            anchors { top: update.bottom; topMargin: 11 }
            width: parent.width
            tabs: [
                { text: qsTr("What's New"), key: "W" },
                { text: qsTr("Logs"), key: "L" },
                { text: qsTr("Feedback"), key: "F" },
                { text: qsTr("Advanced"), key: "D" }
            ]
            current: page.about.selectedTab
            onChosen: value => page.about.selectedTab = value
        }
        Loader {
            id: tab
            anchors { top: tabs.bottom; topMargin: Theme.cardPadding; bottom: parent.bottom }
            width: parent.width
        }
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
}

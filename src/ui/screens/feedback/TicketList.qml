import QtQuick
import QtQuick.Templates as T
import Tamsel

// The tickets of this machine, and the way to the next one.
FocusScope {
    id: view

    required property FeedbackVM feedback
    // The ticket that is shown beside the list; empty: none.
    property string openUuid

    // There is nothing to show because it could not be loaded.
    readonly property bool saysFailure: list.count === 0 && feedback.errorMsg === qsTranslate("FeedbackVM", "Load Failed")

    signal newRequested()
    signal refreshRequested()
    signal chosen(ticketRow row)

    function focusNew(): void {
        newButton.forceActiveFocus(Qt.OtherFocusReason);
    }
    function focusRow(): void {
        if (list.count > 0)
            list.forceActiveFocus(Qt.TabFocusReason);
        else
            focusNew();
    }

    Card { anchors.fill: parent }

    Button {
        id: newButton
        x: 11
        y: 11
        width: Math.min(260, refresh.x - x - 4)
        text: qsTr("New Feedback")
        symbol: "add"
        focus: true
        onClicked: view.newRequested()
    }
    IconButton {
        id: refresh
        anchors { right: parent.right; rightMargin: 8 }
        y: newButton.y
        text: qsTr("Refresh")
        symbol: "arrow.clockwise"
        busy: view.feedback.isLoading
        onClicked: view.refreshRequested()
    }
    ListView {
        id: list
        x: 1
        y: 52
        width: parent.width - 2
        height: parent.height - y - 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: true
        cacheBuffer: 400
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Feedback")
        onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)
        T.ScrollBar.vertical: ScrollBar {}

        model: GadgetListModel {
            source: view.feedback
            list: "rows"
            key: "uuid"
        }
        delegate: TicketRowV {
            id: entry

            readonly property TicketList owner: ListView.view ? ListView.view.parent as TicketList
                                                              : null

            width: ListView.view ? ListView.view.width : 0
            selected: owner && owner.openUuid === row.uuid
            isStop: ListView.isCurrentItem
            onClicked: {
                ListView.view.currentIndex = index;
                owner.chosen(row);
            }
        }
    }
    EmptyState {
        anchors.centerIn: list
        width: parent.width - 2 * Theme.cardPadding
        visible: list.count === 0 && !view.saysFailure
        symbol: "send"
        text: qsTr("No feedback yet")
    }
    LoadFailed {
        anchors.centerIn: list
        width: parent.width - 2 * Theme.cardPadding
        visible: view.saysFailure
        line: qsTr("No feedback yet")
        onRetried: view.refreshRequested()
    }
}

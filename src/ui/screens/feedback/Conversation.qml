import QtQuick
import QtQuick.Templates as T
import Tamsel

// What a ticket is about and what was said to it, the newest last and in sight.
ListView {
    id: list

    required property FeedbackVM feedback

    // Scrolls by most of what is seen.
    function scroll(direction: int): void {
        const bottom = Math.max(originY, originY + contentHeight - height);
        contentY = Math.max(originY, Math.min(bottom, contentY + direction * height * 0.8));
    }

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    activeFocusOnTab: false
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Conversation")
    T.ScrollBar.vertical: ScrollBar {}

    model: GadgetListModel {
        source: list.feedback
        list: "comments"
        key: "id"
    }
    delegate: CommentV { width: ListView.view ? ListView.view.width : 0 }

    header: Item {
        id: top

        readonly property FeedbackVM feedback: (ListView.view as Conversation)?.feedback ?? null

        width: ListView.view ? ListView.view.width : 0
        height: line.y + 35

        SelectableText {
            id: content
            x: 18
            width: parent.width - 2 * x
            text: top.feedback ? top.feedback.page.content : ""
            color: Theme.textMuted
        }
        Rectangle {
            id: line
            y: content.height + 12
            width: parent.width
            height: 1
            color: Theme.border
        }
        Label {
            x: 18
            y: line.y + 10
            type: Theme.section
            text: qsTr("Conversation")
            color: Theme.textMuted
            Accessible.role: Accessible.Heading
        }
    }

    Connections {
        target: list.feedback
        function onTicketDetailChanged(): void { settled.start(); }
    }
    Timer {
        id: settled
        interval: 0
        onTriggered: {
            if (list.count > 0)
                list.positionViewAtEnd();
            else
                list.positionViewAtBeginning();
        }
    }
}

import QtQuick
import Tamsel

// The open ticket with its conversation, and the reply to it.
FocusScope {
    id: view

    required property FeedbackVM feedback
    property bool withBack: false
    // What the list calls the ticket, until it is loaded.
    property string listedTitle

    signal back()
    signal refreshRequested()

    function focusReply(): void {
        reply.forceActiveFocus(Qt.OtherFocusReason);
    }
    function send(): void {
        feedback.addComment(feedback.openUuid);
        focusReply();
    }

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
        if (event.accepted)
            conversation.scroll(event.key === Qt.Key_PageUp ? -1 : 1);
    }

    Card { anchors.fill: parent }

    PaneHead {
        id: head
        width: parent.width
        text: view.feedback.isOpenLoaded ? view.feedback.page.title : view.listedTitle
        withBack: view.withBack
        tail: pill.visible ? pill.width + 12 : 0
        onBack: view.back()

        TicketPill {
            id: pill
            anchors { right: parent.right; rightMargin: 18 }
            y: 13
            width: Math.min(implicitWidth, 160)
            clip: implicitWidth > 160
            visible: view.feedback.isOpenLoaded
            status: view.feedback.page.status
        }
    }
    Conversation {
        id: conversation
        x: 1
        y: head.height
        width: parent.width - 2
        height: line.y - y
        visible: view.feedback.isOpenLoaded
        feedback: view.feedback
    }
    Spinner {
        anchors.centerIn: conversation
        visible: !view.feedback.isOpenLoaded && view.feedback.isLoadingDetail
        size: Theme.iconBanner
    }
    LoadFailed {
        anchors.centerIn: conversation
        width: parent.width - 2 * Theme.cardPadding
        visible: !view.feedback.isOpenLoaded && !view.feedback.isLoadingDetail
        onRetried: view.refreshRequested()
    }
    Rectangle {
        id: line
        y: reply.y - 12
        width: parent.width
        height: 1
        color: Theme.border
    }
    TextArea {
        id: reply
        x: 18
        y: parent.height - height - 13
        width: sendButton.x - x - 10
        focus: true
        label: qsTr("Type reply...")
        placeholderText: qsTr("Type reply...")
        text: view.feedback.newComment
        readOnly: view.feedback.isAddingComment
        onEdited: text => view.feedback.newComment = text
    }
    IconButton {
        id: sendButton
        anchors { right: parent.right; rightMargin: 18 }
        y: reply.y + reply.height - height - 1
        width: 38
        text: qsTr("Send")
        symbol: "send"
        filled: true
        busy: view.feedback.isAddingComment
        enabled: view.feedback.canReply && !busy
        onClicked: view.send()
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: view.activeFocus && view.visible && sendButton.enabled
        onActivated: view.send()
    }
}

import QtQuick
import Tamsel

// Feedback: the list, and beside it the form or the open ticket; in a narrow window one of them.
FocusScope {
    id: view

    required property FeedbackVM feedback

    enum Pane { None, Form, Ticket }
    property int pane: FeedbackV.None

    readonly property bool shown: visible && Window.visibility !== Window.Hidden
    readonly property bool isAlone: pane === FeedbackV.None
    readonly property bool isOnePane: Theme.compact

    function refresh(): void {
        if (!feedback.isLoading)
            feedback.loadTickets();
        if (pane === FeedbackV.Ticket && !feedback.isLoadingDetail)
            feedback.loadDetail(feedback.openUuid);
    }
    function openForm(): void {
        feedback.beginNew();
        pane = FeedbackV.Form;
        form.focusFirst();
    }
    function openTicket(row: ticketRow): void {
        if (!feedback.isLoadingDetail || feedback.openUuid !== row.uuid)
            feedback.loadDetail(row.uuid);
        ticket.listedTitle = row.title;
        pane = FeedbackV.Ticket;
        ticket.focusReply();
    }
    function close(): void {
        const wasTicket = pane === FeedbackV.Ticket;
        pane = FeedbackV.None;
        if (wasTicket)
            list.focusRow();
        else
            list.focusNew();
    }

    onShownChanged: if (shown) refresh()
    Component.onCompleted: if (shown) refresh()
    Keys.onEscapePressed: event => {
        event.accepted = !isAlone;
        if (event.accepted)
            close();
    }

    ErrorLine {
        id: error
        width: parent.width
        // In place of the list it stands in its own words.
        text: view.isAlone && list.saysFailure ? "" : view.feedback.errorMsg
    }
    Connections {
        target: view.feedback
        // A reply changes the ticket's state, in the list too.
        function onTicketDetailChanged(): void {
            if (!view.feedback.isOpenLoaded || view.feedback.isLoading)
                return;
            const rows = view.feedback.rows;
            for (let i = 0; i < rows.length; ++i) {
                if (rows[i].uuid === view.feedback.openUuid
                        && rows[i].status !== view.feedback.page.status) {
                    view.feedback.loadTickets();
                    return;
                }
            }
        }
    }
    Item {
        id: body
        anchors { fill: parent; topMargin: error.visible ? error.height + 8 : 0 }

        TicketList {
            id: list
            width: view.isAlone ? parent.width : Theme.ticketListWidth
            height: parent.height
            visible: view.isAlone || !view.isOnePane
            focus: true
            feedback: view.feedback
            openUuid: view.pane === FeedbackV.Ticket ? view.feedback.openUuid : ""
            onNewRequested: view.openForm()
            onRefreshRequested: view.refresh()
            onChosen: row => view.openTicket(row)
        }
        Item {
            x: view.isOnePane ? 0 : list.width + 14
            width: parent.width - x
            height: parent.height

            FeedbackNewV {
                id: form
                anchors.fill: parent
                visible: view.pane === FeedbackV.Form
                feedback: view.feedback
                withBack: view.isOnePane
                onBack: view.close()
                onNewRequested: view.openForm()
            }
            TicketV {
                id: ticket
                anchors.fill: parent
                visible: view.pane === FeedbackV.Ticket
                feedback: view.feedback
                withBack: view.isOnePane
                onBack: view.close()
                onRefreshRequested: view.refresh()
            }
        }
    }
}

import QtQuick
import Tamsel

// The form of a new ticket, and the thanks once it is filed.
FocusScope {
    id: view

    required property FeedbackVM feedback
    property bool withBack: false

    readonly property bool thanks: feedback.showSuccess
    readonly property bool submitting: feedback.isSubmitting
    readonly property bool canSubmit: feedback.canSubmit && !submitting && !thanks
    // The button had the keyboard when it was pressed.
    property bool fromButton: false

    signal back()
    signal newRequested()

    function focusFirst(): void {
        if (thanks)
            again.forceActiveFocus(Qt.OtherFocusReason);
        else
            titleField.forceActiveFocus(Qt.OtherFocusReason);
    }
    function submit(): void {
        fromButton = submitButton.activeFocus;
        feedback.submit();
    }

    onThanksChanged: if (activeFocus) focusFirst()
    onSubmittingChanged: {
        if (!submitting && !thanks && activeFocus && fromButton)
            submitButton.forceActiveFocus(Qt.OtherFocusReason);
    }

    Card { anchors.fill: parent }

    PaneHead {
        id: head
        width: parent.width
        text: qsTr("New Feedback")
        withBack: view.withBack
        onBack: view.back()
    }
    Item {
        x: 18
        y: head.height + 5
        width: parent.width - 2 * x
        height: parent.height - y - 13
        visible: !view.thanks

        CategoryChoice {
            id: category
            width: parent.width
            feedback: view.feedback
        }
        FormField {
            id: titlePart
            y: category.height + 12
            width: parent.width
            label: qsTr("Title")

            TextField {
                id: titleField
                width: titlePart.width
                focus: true
                label: titlePart.label
                text: view.feedback.title
                readOnly: view.submitting
                onTextEdited: view.feedback.title = text
            }
        }
        FormField {
            id: contentPart
            y: titlePart.y + titlePart.height + 12
            width: parent.width
            label: qsTr("Description")

            TextArea {
                width: contentPart.width
                height: Math.max(Theme.fieldHeight, cancel.y - 12 - contentPart.y - 21)
                label: contentPart.label
                text: view.feedback.content
                readOnly: view.submitting
                onEdited: text => view.feedback.content = text
            }
        }
        Button {
            id: cancel
            anchors { right: submitButton.left; rightMargin: 10 }
            y: parent.height - height
            text: qsTr("Cancel")
            enabled: !view.submitting
            onClicked: {
                view.feedback.resetForm();
                view.back();
            }
        }
        Button {
            id: submitButton
            anchors.right: parent.right
            y: cancel.y
            kind: Button.Primary
            text: qsTr("Submit")
            symbol: "send"
            busy: view.submitting
            enabled: view.canSubmit
            onClicked: view.submit()
        }
    }
    Column {
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.cardPadding
        visible: view.thanks
        spacing: 14

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "checkmark.circle.fill"
            size: Theme.iconEmpty
            color: Theme.green
        }
        Label {
            width: parent.width
            type: Theme.emptyLine
            text: qsTr("Thank you for your feedback!")
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Button {
            id: again
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("New Feedback")
            symbol: "add"
            onClicked: view.newRequested()
        }
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: view.activeFocus && view.visible && view.canSubmit
        onActivated: view.submit()
    }
}

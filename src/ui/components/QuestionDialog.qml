import QtQuick
import Tamsel

// A question before something that cannot be undone. The keyboard starts on "Cancel".
Dialog {
    id: question

    property string text
    // What the destructive button says.
    property string yes

    signal confirmed()

    width: Theme.questionWidth
    divided: false
    onOpened: no.forceActiveFocus(Qt.TabFocusReason)

    Label {
        x: question.edge
        width: parent.width - x - Theme.cardPadding
        bottomPadding: 22
        text: question.text
        color: Theme.textMuted
        wrapMode: Text.Wrap
    }

    buttons: [
        Button {
            id: no
            text: qsTr("Cancel")
            onClicked: question.canceled()
        },
        Button {
            kind: Button.Destructive
            text: question.yes
            onClicked: question.confirmed()
        }
    ]
}

import QtQuick
import Tamsel

// The combo editor. It edits its model alone and says when to store it.
Dialog {
    id: view

    required property ShortcutEditVM editor
    required property Recording recording

    signal saved()

    width: Theme.editorWidth
    title: qsTr("Combo")
    onOpened: {
        if (editor.isNew)
            titleField.forceActiveFocus(Qt.PopupFocusReason);
        else
            trigger.focusRecordButton();
    }

    EditorSection {
        divided: false

        Item {
            width: parent.width
            height: Theme.fieldHeight

            Label {
                height: parent.height
                type: Theme.formLabel
                text: qsTr("Title")
                Accessible.ignored: true
            }
            TextField {
                id: titleField
                x: Theme.dialogLabelWidth
                width: parent.width - x
                label: qsTr("Title")
                text: view.editor.title
                onTextEdited: view.editor.title = text
            }
        }
    }
    EditorTrigger {
        id: trigger
        editor: view.editor
        recording: view.recording
    }
    EditorAction { editor: view.editor }
    EditorRelease { editor: view.editor }

    buttons: [
        Button {
            text: qsTr("Cancel")
            onClicked: view.canceled()
        },
        Button {
            kind: Button.Primary
            text: qsTr("Save")
            enabled: view.editor.canSave
            onClicked: view.saved()
        }
    ]

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: view.editor.canSave
        onActivated: view.saved()
    }
}

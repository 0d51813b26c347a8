import QtQuick
import Tamsel

// What a combo does when its keys go down.
EditorSection {
    id: section

    required property ShortcutEditVM editor

    readonly property int action: editor.action

    function choice(value: int): var {
        return { value: value, text: section.editor.titleOf(value) };
    }

    Item {
        width: parent.width
        height: Theme.segmentHeight

        Label {
            height: parent.height
            type: Theme.formLabel
            text: qsTr("Action")
        }
        SegmentedControl {
            x: Theme.dialogLabelWidth
            label: qsTr("Action")
            choices: [section.choice(ShortcutEditVM.Command),
                      section.choice(ShortcutEditVM.KeyPress),
                      section.choice(ShortcutEditVM.TypeText),
                      section.choice(ShortcutEditVM.PasteClipboard),
                      section.choice(ShortcutEditVM.OpenURL)]
            current: section.action
            onChosen: value => section.editor.action = value
        }
    }
    Loader {
        width: parent.width
        sourceComponent: section.action === ShortcutEditVM.KeyPress ? keyPress
                       : section.action === ShortcutEditVM.TypeText ? typeText
                       : section.action === ShortcutEditVM.PasteClipboard ? note : value
    }

    Component {
        id: keyPress
        EditorKeyPress { editor: section.editor }
    }
    Component {
        id: typeText
        FormField {
            label: qsTr("Text to type (US layout)")
            message: section.editor.valueMessage

            TextArea {
                width: parent.width
                label: qsTr("Text to type (US layout)")
                text: section.editor.value
                errorText: section.editor.valueMessage
                onEdited: text => section.editor.value = text
            }
        }
    }
    Component {
        id: note
        Label {
            text: qsTr("Pastes current clipboard content via virtual HID. Works in IPMI/KVM consoles.")
            color: Theme.textMuted
            wrapMode: Text.Wrap
        }
    }
    Component {
        id: value
        EditorValue {
            value: section.editor.value
            action: section.action
            message: section.editor.valueMessage
            onEdited: text => section.editor.value = text
        }
    }
}

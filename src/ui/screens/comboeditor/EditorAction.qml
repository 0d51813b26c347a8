import QtQuick
import Tamsel

// What a combo does when its keys go down.
EditorSection {
    id: section

    required property ShortcutEditVM editor

    readonly property int action: editor.action

    onActionChanged: form.show()
    Component.onCompleted: form.show()

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
        id: form
        width: parent.width
        visible: item

        function show(): void {
            const model = { editor: section.editor };
            switch (section.action) {
            case ShortcutEditVM.KeyPress: return setSource("EditorKeyPress.qml", model);
            case ShortcutEditVM.TypeText: return setSource("EditorText.qml", model);
            case ShortcutEditVM.PasteClipboard: return setSource("");
            default: setSource("EditorValue.qml", model);
            }
        }
    }
    Label {
        width: parent.width
        visible: section.action === ShortcutEditVM.PasteClipboard
        text: qsTr("Pastes current clipboard content via virtual HID. Works in IPMI/KVM consoles.")
        color: Theme.textMuted
        wrapMode: Text.Wrap
    }
}

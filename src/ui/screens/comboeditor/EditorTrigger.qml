import QtQuick
import Tamsel

// The keys that set a combo off: shown as caps, chosen, recorded, or toggled.
EditorSection {
    id: section

    required property ShortcutEditVM editor
    required property Recording recording

    function focusRecordButton(): void {
        field.focusRecordButton(Qt.TabFocusReason);
    }

    Item {
        width: parent.width
        height: Math.max(field.height, caps.height)

        Label {
            height: Theme.fieldHeight
            type: Theme.formLabel
            text: qsTr("Trigger")
        }
        KeyCaps {
            id: caps
            x: Theme.dialogLabelWidth
            width: field.x - x - 8
            large: true
            names: section.editor.triggerCaps
        }
        KeyField {
            id: field
            anchors.right: parent.right
            width: 236
            role: qsTr("Trigger")
            keyCode: section.editor.keyCode
            keyName: section.editor.keyName
            recording: section.recording
            onPicked: code => section.editor.pickKey(code)
            onRecorded: (code, modifiers) => section.editor.recordTrigger(code, modifiers)
        }
    }
    ModifierToggles {
        width: parent.width
        names: ["control", "shift", "option", "command",
                "left_control", "left_shift", "left_option", "left_command",
                "right_control", "right_shift", "right_option", "right_command"]
        chosen: section.editor.modifiers
        onToggled: name => section.editor.toggleModifier(name)
    }
}

import QtQuick
import Tamsel

// The chord of a key press action.
Column {
    id: chord

    required property ShortcutEditVM editor

    spacing: 10

    Item {
        width: parent.width
        height: Math.max(field.height, caps.height) + (error.visible ? error.height + 5 : 0)

        KeyCaps {
            id: caps
            x: Theme.dialogLabelWidth
            width: field.x - x - 8
            large: true
            names: chord.editor.outputCaps
        }
        KeyField {
            id: field
            anchors.right: parent.right
            width: 236
            role: qsTr("Key")
            keyCode: chord.editor.mainKey
            keyName: chord.editor.mainKeyName
            onPicked: code => chord.editor.pickMainKey(code)
        }
        ErrorLine {
            id: error
            x: Theme.dialogLabelWidth
            anchors.bottom: parent.bottom
            width: parent.width - x
            text: chord.editor.keyPressMainInvalid
                  ? qsTr("Pick a letter, number, arrow, or symbol — modifiers and mouse buttons cannot be the main key.")
                  : ""
        }
    }
    ModifierToggles {
        width: parent.width
        names: ["left_control", "left_shift", "left_option", "left_command",
                "right_control", "right_shift", "right_option", "right_command"]
        chosen: chord.editor.outputModifiers
        onToggled: name => chord.editor.toggleOutputModifier(name)
    }
}

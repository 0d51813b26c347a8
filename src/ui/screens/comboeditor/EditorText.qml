import QtQuick
import Tamsel

// The text that a combo types.
FormField {
    id: form

    required property ShortcutEditVM editor

    label: qsTr("Text to type (US layout)")
    message: editor.valueMessage

    TextArea {
        width: parent.width
        label: form.label
        text: form.editor.value
        errorText: form.message
        onEdited: text => form.editor.value = text
    }
}

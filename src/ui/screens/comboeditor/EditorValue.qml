import QtQuick
import Tamsel

// The command or the URL of an action, or of the release action, in one line.
FormField {
    id: form

    required property ShortcutEditVM editor
    property bool release: false

    readonly property int action: release ? editor.upAction : editor.action

    message: release ? editor.upMessage : editor.valueMessage
    label: action === ShortcutEditVM.Command ? qsTr("Command") : qsTr("URL / deeplink")

    TextField {
        width: parent.width
        font: Theme.font(Theme.mono)
        label: form.label
        text: form.release ? form.editor.upValue : form.editor.value
        error: form.message
        Accessible.description: form.message
        onTextEdited: {
            if (form.release)
                form.editor.upValue = text;
            else
                form.editor.value = text;
        }
    }
}

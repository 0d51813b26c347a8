import QtQuick
import Tamsel

// A command or a URL in one line.
FormField {
    id: form

    required property string value
    required property int action

    signal edited(string value)

    label: action === ShortcutEditVM.Command ? qsTr("Command") : qsTr("URL / deeplink")

    TextField {
        width: parent.width
        font: Theme.font(Theme.mono)
        label: form.label
        text: form.value
        error: form.message
        Accessible.description: form.message
        onTextEdited: form.edited(text)
    }
}

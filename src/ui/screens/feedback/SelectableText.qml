import QtQuick
import Tamsel

// A text of the conversation, to be selected and copied with the pointer.
TextEdit {
    id: view

    readOnly: true
    selectByMouse: true
    selectByKeyboard: true
    activeFocusOnTab: false
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    font: Theme.font(Theme.body)
    color: Theme.text
    selectionColor: Theme.accentFill
    selectedTextColor: Theme.textOnAccent
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    // What is selected in one message is not selected any more when another one is turned to.
    onActiveFocusChanged: if (!activeFocus) deselect()

    HoverHandler { cursorShape: Qt.IBeamCursor }
}

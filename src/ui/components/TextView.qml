import QtQuick
import QtQuick.Templates as T
import Tamsel

// A card with a text to read and to select, as long as it likes.
Rectangle {
    id: view

    property alias text: edit.text
    property alias format: edit.textFormat
    property alias wrapMode: edit.wrapMode
    property TextStyle type: Theme.body
    property string label
    property int margin: Theme.cardPadding

    color: Theme.surface
    radius: Theme.radiusCard
    border { width: 1; color: edit.activeFocus ? Theme.focus : Theme.border }

    Flickable {
        id: flick

        function reveal(place: rect): void {
            contentX = Math.max(Math.min(contentX, place.x), place.x + place.width - width);
            contentY = Math.max(Math.min(contentY, place.y), place.y + place.height - height);
        }

        anchors { fill: parent; margins: 2 }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: Math.max(width, edit.x + edit.implicitWidth + view.margin)
        contentHeight: edit.y + edit.implicitHeight + view.margin
        T.ScrollBar.vertical: ScrollBar {}
        T.ScrollBar.horizontal: ScrollBar { implicitHeight: 10 }

        TextEdit {
            id: edit
            x: view.margin - 2
            y: x - 2
            // A text that wraps has no width of its own to go by.
            width: wrapMode === TextEdit.NoWrap ? Math.max(implicitWidth, flick.width - 2 * x)
                                                : flick.width - 2 * x
            readOnly: true
            selectByMouse: true
            selectByKeyboard: true
            activeFocusOnTab: true
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            font: Theme.font(view.type)
            color: Theme.text
            selectionColor: Theme.accentFill
            selectedTextColor: Theme.textOnAccent
            onCursorRectangleChanged: if (activeFocus) flick.reveal(cursorRectangle)
            Accessible.role: Accessible.EditableText
            Accessible.readOnly: true
            Accessible.name: view.label
        }
    }
}

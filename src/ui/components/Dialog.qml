import QtQuick
import QtQuick.Templates as T
import Tamsel

// A question or form over a darkened window: a title, contents that scroll when they are too high,
// and the buttons, which stay. The keyboard stays inside; Escape cancels.
T.Popup {
    id: dialog

    property string title
    // Whether a line sets the buttons apart; a short question does without.
    property bool divided: true
    default property alias contents: body.data
    property alias buttons: buttonRow.data

    readonly property int edge: Theme.dialogPadding
    // What had the keyboard before; whoever closes the dialog gives it back.
    property Item opener: null

    signal canceled()

    // What takes the keyboard focus scrolls into view.
    function reveal(item: Item): void {
        if (!item)
            return;
        let inside = item;
        while (inside && inside !== body)
            inside = inside.parent;
        if (!inside)
            return;
        const top = item.mapToItem(body, 0, 0).y - 8;
        const bottom = top + item.height + 16;
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top);
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(bottom - flick.height, flick.contentHeight - flick.height);
    }

    parent: T.Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)
    height: Math.min(implicitHeight, (parent ? parent.height : 0) - 2 * Theme.dialogMargin)
    implicitHeight: head.y + head.height + body.implicitHeight + foot.height
    modal: true
    dim: true
    focus: true
    closePolicy: T.Popup.NoAutoClose

    Component.onCompleted: {
        opener = parent.Window.activeFocusItem;
        open();
    }

    T.Overlay.modal: Rectangle { color: Theme.scrim }

    background: Rectangle {
        radius: Theme.radiusDialog
        color: Theme.surface
        border { width: 1; color: Theme.border }
    }
    contentItem: frame

    readonly property FocusScope frame: FocusScope {
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.title
        Keys.onEscapePressed: dialog.canceled()

        Label {
            id: head
            x: dialog.edge
            y: dialog.divided ? 0 : 17
            width: parent.width - 2 * x
            height: dialog.divided ? 54 : 34
            type: Theme.dialogTitle
            text: dialog.title
            Accessible.role: Accessible.Heading
        }
        Flickable {
            id: flick
            y: head.y + head.height
            width: parent.width
            height: foot.y - y
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            contentHeight: body.implicitHeight
            T.ScrollBar.vertical: ScrollBar {}

            Column {
                id: body
                width: flick.width
            }
        }
        Item {
            id: foot
            y: parent.height - height
            width: parent.width
            height: dialog.divided ? 59 : 51

            Rectangle {
                width: parent.width
                height: 1
                visible: dialog.divided
                color: Theme.border
            }
            Row {
                id: buttonRow
                anchors {
                    right: parent.right
                    rightMargin: dialog.edge
                    top: parent.top
                    topMargin: dialog.divided ? 14 : 0
                }
                spacing: 10
            }
        }
    }

    Connections {
        target: dialog.parent ? dialog.parent.Window.window : null
        function onActiveFocusItemChanged(): void {
            dialog.reveal(dialog.parent.Window.activeFocusItem);
        }
    }
}

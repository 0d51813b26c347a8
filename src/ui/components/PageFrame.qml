import QtQuick
import Tamsel

// The frame of a screen: a fixed header where there is a title, and the body below it.
FocusScope {
    id: frame

    property string title
    property alias actions: actionRow.data
    default property alias body: bodyArea.data

    // The window shows this screen; false while it is hidden. Who loads the screen tells.
    property bool shown: Window.visibility !== Window.Hidden
    readonly property int contentWidth: header.width
    // What Page Up and Down, Home and End scroll.
    property Flickable scroller: null

    // The user wants a new row.
    signal addRequested()
    // What has the keyboard focus now is inside this screen.
    signal focusMoved(Item item)

    // Gives the keyboard to what the screen begins with, where it has something of the kind.
    function focusFirst(): void {}

    // Scrolls as a key says; false for a key that says nothing of it.
    function scrollBy(key: int): bool {
        const list = scroller as ListView;
        const page = scroller.height - Theme.headerHeight;
        const top = scroller.originY - scroller.topMargin;
        const bottom = Math.max(top, scroller.originY + scroller.contentHeight - scroller.height);
        switch (key) {
        case Qt.Key_PageUp:
            scroller.contentY = Math.max(top, scroller.contentY - page);
            return true;
        case Qt.Key_PageDown:
            scroller.contentY = Math.min(bottom, scroller.contentY + page);
            return true;
        case Qt.Key_Home:
            // A list only estimates where its far rows are.
            if (list)
                list.positionViewAtBeginning();
            scroller.contentY = scroller.originY - scroller.topMargin;
            return true;
        case Qt.Key_End:
            if (list)
                list.positionViewAtEnd();
            else
                scroller.contentY = bottom;
            return true;
        }
        return false;
    }

    Keys.onPressed: event => event.accepted = scroller && scrollBy(event.key)

    Connections {
        target: frame.Window.window
        function onActiveFocusItemChanged(): void {
            const focused = frame.Window.activeFocusItem;
            for (let item = focused; item; item = item.parent) {
                if (item === bodyArea) {
                    frame.focusMoved(focused);
                    return;
                }
            }
        }
    }

    Item {
        id: header
        x: Math.round((parent.width - width) / 2)
        width: Math.min(parent.width - 2 * Theme.pagePadding, Theme.contentMaxWidth)
        height: Theme.headerHeight
        visible: frame.title

        Label {
            anchors.verticalCenter: parent.verticalCenter
            type: Theme.title
            text: frame.title
            Accessible.role: Accessible.Heading
        }
        Row {
            id: actionRow
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 8
        }
    }
    Item {
        id: bodyArea
        anchors { fill: parent; topMargin: frame.title ? Theme.headerHeight : 0 }
    }
}

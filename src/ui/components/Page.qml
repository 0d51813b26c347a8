import QtQuick
import QtQuick.Templates as T
import Tamsel

// The frame of a screen: a fixed header where there is a title, and under it the contents, which
// scroll. What takes the keyboard focus scrolls into view.
FocusScope {
    id: page

    property string title
    property alias actions: actionRow.data
    default property alias contents: column.data

    // The window shows this screen; false while it is hidden.
    readonly property bool shown: Window.visibility !== Window.Hidden

    // The user wants a new row.
    signal addRequested()

    function scrollToTop(): void {
        flick.contentY = 0;
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(column, 0, 0).y - Theme.cardPadding;
        const bottom = top + item.height + 2 * Theme.cardPadding;
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top);
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(bottom - flick.height, flick.contentHeight - flick.height);
    }

    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged(): void {
            const focused = page.Window.activeFocusItem;
            for (let item = focused; item; item = item.parent) {
                if (item === column) {
                    page.reveal(focused);
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
        visible: page.title

        Label {
            anchors.verticalCenter: parent.verticalCenter
            type: Theme.title
            text: page.title
            Accessible.role: Accessible.Heading
        }
        Row {
            id: actionRow
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 8
        }
    }

    Flickable {
        id: flick
        anchors { fill: parent; topMargin: page.title ? Theme.headerHeight : 0 }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: column.implicitHeight
        T.ScrollBar.vertical: ScrollBar {}

        Column {
            id: column
            x: Math.round((parent.width - width) / 2)
            width: header.width
            topPadding: page.title ? 0 : 24
            bottomPadding: 24
        }
    }
}

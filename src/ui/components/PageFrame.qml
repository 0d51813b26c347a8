import QtQuick
import Tamsel

// The frame of a screen: a fixed header where there is a title, and the body below it.
FocusScope {
    id: frame

    property string title
    property alias actions: actionRow.data
    default property alias body: bodyArea.data

    // The window shows this screen; false while it is hidden.
    readonly property bool shown: Window.visibility !== Window.Hidden
    readonly property int contentWidth: header.width

    // The user wants a new row.
    signal addRequested()
    // What has the keyboard focus now is inside this screen.
    signal focusMoved(Item item)

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

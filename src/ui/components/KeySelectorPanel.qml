import QtQuick
import Tamsel

// The key selector menu's contents: the filter, which keeps the keyboard, over the list.
FocusScope {
    id: panel

    required property int keyCode

    signal picked(int code)

    // Shows the current key and takes the keyboard.
    function start(): void {
        list.currentIndex = Math.max(0, KeyCatalogue.indexOf(keyCode));
        // Some of its neighbours above it, and the first of them whole.
        list.positionViewAtIndex(Math.max(0, list.currentIndex - 4), ListView.Beginning);
        filter.forceActiveFocus(Qt.PopupFocusReason);
    }

    TextField {
        id: filter
        x: 7
        y: 7
        width: parent.width - 14
        height: Theme.controlHeight
        focus: true
        symbol: "search"
        placeholderText: qsTr("Search keys")
        onTextEdited: list.narrow(text)
        Keys.onUpPressed: list.decrementCurrentIndex()
        Keys.onDownPressed: list.incrementCurrentIndex()
        Keys.onReturnPressed: list.chooseCurrent()
        Keys.onEnterPressed: list.chooseCurrent()
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                event.accepted = true;
                list.currentIndex = event.key === Qt.Key_Home ? 0 : list.count - 1;
            }
        }
    }
    KeySelectorList {
        id: list
        anchors { fill: parent; topMargin: 43 }
        keyCode: panel.keyCode
        onPicked: code => panel.picked(code)
    }
}

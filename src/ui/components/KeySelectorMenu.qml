import QtQuick
import QtQuick.Templates as T
import Tamsel

// Every key of the catalogue under its section, narrowed by what is typed. Opens when made.
T.Popup {
    id: menu

    required property Item owner
    required property int keyCode

    signal picked(int code)

    function choose(code: int): void {
        menu.close();
        menu.picked(code);
    }

    // Below its owner where it fits or where there is more room, else above.
    function place(): void {
        const top = owner.mapToItem(null, 0, 0).y;
        const room = owner.Window.height - margins;
        const below = room - (top + owner.height);
        const above = top - margins;
        const wanted = Math.min(Theme.menuMaxHeight, room - margins);
        const under = below >= wanted || below >= above;
        height = Math.min(wanted, Math.max(under ? below : above, 200));
        y = under ? owner.height - 2 : 2 - height;
    }

    parent: owner
    width: Math.max(Theme.menuMinWidth, owner.width)
    margins: 8
    padding: 1
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    Component.onCompleted: {
        KeyCatalogue.filter = "";
        place();
        open();
    }
    onOpened: {
        list.currentIndex = Math.max(0, KeyCatalogue.indexOf(menu.keyCode));
        list.positionViewAtIndex(list.currentIndex, ListView.Center);
        filter.forceActiveFocus(Qt.PopupFocusReason);
    }

    contentItem: FocusScope {
        TextField {
            id: filter
            x: 7
            y: 7
            width: parent.width - 14
            height: Theme.controlHeight
            focus: true
            symbol: "search"
            placeholderText: qsTr("Search keys")
            onTextEdited: {
                KeyCatalogue.filter = text;
                list.currentIndex = list.count > 0 ? 0 : -1;
                list.positionViewAtBeginning();
            }
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
            keyCode: menu.keyCode
            onPicked: code => menu.choose(code)
        }
    }

    background: Rectangle {
        radius: Theme.radiusPopup
        color: Theme.surface
        border { width: 1; color: Theme.borderStrong }
    }
}

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
        // In this order: closed, the menu is on its way out.
        menu.picked(code);
        menu.close();
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
    onOpened: (contentItem as KeySelectorPanel).start()

    contentItem: KeySelectorPanel {
        keyCode: menu.keyCode
        onPicked: code => menu.choose(code)
    }

    background: Rectangle {
        radius: Theme.radiusPopup
        color: Theme.surface
        border { width: 1; color: Theme.borderStrong }
    }
}

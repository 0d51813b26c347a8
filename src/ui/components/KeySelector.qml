import QtQuick
import Tamsel

// Chooses one key of the catalogue: shows its name and opens the menu of all. An Item, not a
// button template, which would tell assistive technology that it is a push button.
Item {
    id: selector

    // What the key is for, as "From".
    required property string role
    required property int keyCode
    required property string keyName

    readonly property bool menuOpen: menu.item !== null
    readonly property string shownName: keyName || qsTr("Choose a key")

    signal picked(int code)

    function openMenu(): void {
        forceActiveFocus(Qt.OtherFocusReason);
        if (!menuOpen)
            menu.setSource(Qt.resolvedUrl("KeySelectorMenu.qml"),
                           { owner: selector, keyCode: keyCode });
    }

    implicitHeight: Theme.fieldHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.ComboBox
    Accessible.name: qsTr("%1: %2").arg(role).arg(shownName)
    Accessible.focusable: true
    Accessible.ignored: !visible
    Accessible.onPressAction: openMenu()
    Keys.onSpacePressed: openMenu()
    Keys.onReturnPressed: openMenu()
    Keys.onEnterPressed: openMenu()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Down && event.modifiers & Qt.AltModifier) {
            event.accepted = true;
            openMenu();
        }
    }

    TapHandler { onTapped: selector.openMenu() }
    HoverHandler { id: hover }

    KeySelectorFace {
        id: face
        anchors { fill: parent; leftMargin: 13; rightMargin: 12 }
        keyName: selector.keyName
        placeholder: selector.shownName
    }

    Tooltip {
        owner: selector
        text: selector.keyName
        wanted: face.truncated && !selector.menuOpen && (hover.hovered || selector.activeFocus)
    }

    Loader { id: menu }

    Connections {
        target: menu.item as KeySelectorMenu
        function onPicked(code: int): void { selector.picked(code); }
        function onClosed(): void {
            menu.source = "";
            selector.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}

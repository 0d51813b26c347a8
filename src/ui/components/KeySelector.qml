import QtQuick
import QtQuick.Templates as T
import Tamsel

// Chooses one key of the catalogue: shows its name and opens the menu of all.
T.AbstractButton {
    id: selector

    // What the key is for, as "From".
    required property string role
    required property int keyCode
    required property string keyName
    // Leaves room for a button of the same outline at the right.
    property int trailingPadding: 12

    readonly property bool menuOpen: menu.item !== null
    readonly property string shownName: keyName || qsTr("Choose a key")

    signal picked(int code)

    implicitHeight: Theme.fieldHeight
    leftPadding: 13
    rightPadding: trailingPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ComboBox
    Accessible.name: qsTr("%1: %2").arg(role).arg(shownName)
    Accessible.editable: false
    Keys.onReturnPressed: selector.clicked()
    Keys.onEnterPressed: selector.clicked()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Down && event.modifiers & Qt.AltModifier) {
            event.accepted = true;
            selector.clicked();
        }
    }
    onClicked: menu.setSource(Qt.resolvedUrl("KeySelectorMenu.qml"),
                              { owner: selector, keyCode: selector.keyCode })

    contentItem: KeySelectorFace {
        keyName: selector.keyName
        placeholder: selector.shownName
    }

    Tooltip {
        owner: selector
        text: selector.keyName
        wanted: (selector.contentItem as KeySelectorFace).truncated && !selector.menuOpen
                && (selector.hovered || selector.visualFocus)
    }

    Loader { id: menu }

    Connections {
        target: menu.item as KeySelectorMenu
        function onPicked(code: int): void { selector.picked(code); }
        function onClosed(): void { menu.source = ""; }
    }
}

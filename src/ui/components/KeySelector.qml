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
    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Down && event.modifiers & Qt.AltModifier) {
            event.accepted = true;
            click();
        }
    }
    onClicked: menu.active = true

    contentItem: Item {
        Label {
            id: name
            anchors.verticalCenter: parent.verticalCenter
            width: chevron.x - 8
            type: selector.keyName ? Theme.mono : Theme.body
            text: selector.shownName
            color: selector.keyName ? Theme.text : Theme.textMuted
            Accessible.ignored: true
        }
        Icon {
            id: chevron
            anchors.verticalCenter: parent.verticalCenter
            x: parent.width - width
            symbol: "chevron.down"
            size: Theme.iconSmall
        }
    }

    Tooltip {
        owner: selector
        text: selector.keyName
        wanted: name.truncated && !menu.active && (selector.hovered || selector.visualFocus)
    }

    Loader {
        id: menu
        active: false
        sourceComponent: KeySelectorMenu {
            owner: selector
            keyCode: selector.keyCode
            onPicked: code => selector.picked(code)
            // Not at once: the menu still runs its own closing.
            onClosed: Qt.callLater(() => menu.active = false)
        }
    }
}

import QtQuick
import Tamsel

// Where keys are pressed to be looked at: they show up in the list and do nothing here. Only
// Control with Tab leaves, and Control with W goes on to the window.
Item {
    id: input

    // Keeps the window's plain-key shortcuts away, as a text field does.
    readonly property bool capturesText: true
    readonly property string placeholder: qsTr("Click here and press any key...")

    function isCommand(event: KeyEvent): bool {
        return (event.modifiers & Qt.ControlModifier) && event.key === Qt.Key_W;
    }

    implicitHeight: 44
    activeFocusOnTab: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholder
    Accessible.focusable: true

    Keys.priority: Keys.BeforeItem
    Keys.onShortcutOverride: event => event.accepted = !isCommand(event)
    Keys.onPressed: event => {
        const leaves = event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab;
        if (leaves && event.modifiers & Qt.ControlModifier)
            nextItemInFocusChain(event.key === Qt.Key_Tab).forceActiveFocus(Qt.TabFocusReason);
        event.accepted = !isCommand(event);
    }
    Keys.onReleased: event => event.accepted = true

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusField
        color: Theme.field
        border {
            width: input.activeFocus ? Theme.focusWidth : 1
            color: input.activeFocus ? Theme.focus : Theme.borderStrong
        }
    }
    Icon {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        symbol: "keyboard"
        size: Theme.iconRow
    }
    Label {
        x: 40
        width: parent.width - x - 12
        anchors.verticalCenter: parent.verticalCenter
        text: input.placeholder
        color: Theme.textMuted
        Accessible.ignored: true
    }
    TapHandler { onTapped: input.forceActiveFocus(Qt.MouseFocusReason) }
    HoverHandler { cursorShape: Qt.IBeamCursor }
}

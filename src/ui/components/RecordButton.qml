import QtQuick
import QtQuick.Templates as T
import Tamsel

// Records a key into `recorded`. A second click cancels; so does the button's end.
T.AbstractButton {
    id: button

    // Who records for it; nobody yet, perhaps.
    required property Recording recording
    // What the key is for, as "From".
    required property string role

    readonly property bool capturing: recording && recording.owner === button
    readonly property string hint: qsTr("Press any key · Esc to cancel")

    signal recorded(int keyCode, var modifiers)

    implicitWidth: Theme.fieldHeight
    implicitHeight: Theme.fieldHeight
    hoverEnabled: true
    text: qsTr("Record a key")
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: capturing ? hint : role
    Accessible.onPressAction: button.clicked()
    Accessible.ignored: !visible
    onClicked: {
        if (capturing) {
            recording.recorder.cancel();
        } else {
            if (!activeFocus)
                forceActiveFocus(Qt.OtherFocusReason);
            recording.start(button);
        }
    }
    onVisibleChanged: if (!visible && capturing) recording.recorder.cancel()
    Component.onDestruction: if (capturing) recording.recorder.cancel()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Connections {
        target: button.recording
        function onRecorded(owner: Item, keyCode: int, modifiers: var): void {
            if (owner === button)
                button.recorded(keyCode, modifiers);
        }
    }

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: button.capturing ? "record.circle.fill" : "record.circle"
            size: Theme.iconRow
            color: button.capturing ? Theme.red
                 : button.hovered || button.visualFocus ? Theme.text : Theme.textMuted
        }
    }
    background: Item {
        FocusRing {
            visible: button.visualFocus && !button.capturing
            gap: -border.width - 2
        }
    }

    Tooltip {
        owner: button
        text: button.text
        wanted: (button.hovered || button.visualFocus) && !button.capturing
    }
}

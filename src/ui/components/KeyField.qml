import QtQuick
import Tamsel

// A key in one outline: the selector, and the record button where there is a recording to lend.
FocusScope {
    id: field

    required property string role
    required property int keyCode
    required property string keyName
    // Shows the key without offering the menu; recording still replaces it.
    property bool readOnly: false
    property Recording recording: null

    readonly property alias recordButton: recorder
    readonly property bool capturing: recorder.capturing

    signal picked(int code)
    signal recorded(int code, var modifiers)

    function focusSelector(reason: int): void {
        if (readOnly)
            recorder.forceActiveFocus(reason);
        else
            selector.forceActiveFocus(reason);
    }
    function focusRecordButton(reason: int): void {
        recorder.forceActiveFocus(reason);
    }

    implicitHeight: Theme.fieldHeight

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusField
        color: field.readOnly && !field.capturing ? Theme.surfaceAlt : Theme.field
        border {
            width: field.capturing ? Theme.focusWidth : 1
            color: field.capturing ? Theme.red : field.readOnly ? Theme.border : Theme.borderStrong
        }

        FocusRing {
            visible: (selector.activeFocus || selector.menuOpen) && !field.capturing
            gap: 1
        }
    }

    Label {
        visible: field.readOnly && !field.capturing
        x: 13
        anchors.verticalCenter: parent.verticalCenter
        width: selector.width - 2 * x
        type: Theme.mono
        text: field.keyName
        color: Theme.textMuted
        Accessible.name: qsTr("%1: %2").arg(field.role).arg(field.keyName)
        Accessible.ignored: !visible
    }
    KeySelector {
        id: selector
        height: parent.height
        width: parent.width - recorder.width
        visible: !field.readOnly && !field.capturing
        role: field.role
        keyCode: field.keyCode
        keyName: field.keyName
        onPicked: code => field.picked(code)
    }
    Label {
        visible: field.capturing
        x: 13
        anchors.verticalCenter: parent.verticalCenter
        width: selector.width - x - 4
        minimumPixelSize: 11
        fontSizeMode: Text.HorizontalFit
        text: field.capturing ? recorder.hint : ""
        Accessible.role: Accessible.AlertMessage
        Accessible.ignored: !visible
    }
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: selector.width
        width: 1
        height: 20
        visible: recorder.visible && !field.capturing && !field.readOnly
        color: Theme.border
    }
    RecordButton {
        id: recorder
        anchors.right: parent.right
        width: visible ? Theme.fieldHeight : 0
        visible: field.recording
        recording: field.recording
        role: field.role
        onRecorded: (keyCode, modifiers) => field.recorded(keyCode, modifiers)
    }
}

import QtQuick
import Tamsel

// A key of a mapping in one outline: the selector, and at its right the controls in `trailing`.
FocusScope {
    id: field

    required property string role
    required property int keyCode
    required property string keyName
    property bool readOnly: false
    default property alias trailing: trailingRow.data

    signal picked(int code)

    function focusSelector(reason: int): void {
        selector.forceActiveFocus(reason);
    }

    implicitHeight: Theme.fieldHeight

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusField
        color: field.readOnly ? Theme.surfaceAlt : Theme.field
        border { width: 1; color: field.readOnly ? Theme.border : Theme.borderStrong }

        FocusRing {
            visible: selector.activeFocus || selector.menuOpen
            gap: 1
        }
    }

    Label {
        visible: field.readOnly
        x: 13
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 2 * x
        type: Theme.mono
        text: field.keyName
        color: Theme.textMuted
        Accessible.name: qsTr("%1: %2").arg(field.role).arg(field.keyName)
        Accessible.ignored: !visible
    }

    KeySelector {
        id: selector
        height: parent.height
        width: parent.width - trailingRow.width
        visible: !field.readOnly
        role: field.role
        keyCode: field.keyCode
        keyName: field.keyName
        onPicked: code => field.picked(code)
    }

    Row {
        id: trailingRow
        anchors.right: parent.right
        height: parent.height
        visible: !field.readOnly
    }
}

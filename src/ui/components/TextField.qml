import QtQuick
import QtQuick.Templates as T
import Tamsel

// One line of text. `label` is its accessible name; a form draws it above the field.
T.TextField {
    id: field

    property string label
    property string symbol
    property bool error: false

    implicitWidth: 200
    implicitHeight: Theme.fieldHeight
    leftPadding: symbol ? 36 : 12
    rightPadding: 12
    font: Theme.font(Theme.body)
    color: enabled ? Theme.text : Theme.textDisabled
    selectionColor: Theme.accentFill
    selectedTextColor: Theme.textOnAccent
    placeholderTextColor: Theme.textMuted
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    Accessible.name: label || placeholderText

    Icon {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: field.symbol
        symbol: field.symbol
        size: Theme.iconSmall
    }
    Label {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: !field.length && !field.preeditText
        text: field.placeholderText
        color: field.placeholderTextColor
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: field.enabled ? Theme.field : Theme.graySoft
        border {
            width: field.activeFocus || field.error ? Theme.focusWidth : 1
            color: field.error ? Theme.red : field.activeFocus ? Theme.focus : Theme.borderStrong
        }
    }
}

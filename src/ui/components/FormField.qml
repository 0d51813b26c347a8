import QtQuick
import Tamsel

// A field of a form with its label above and what is wrong with it below.
Column {
    id: form

    property string label
    property string message
    default property alias field: slot.data

    spacing: 0

    Label {
        width: parent.width
        visible: form.label
        height: visible ? 16 : 0
        type: Theme.fieldLabel
        text: form.label
        Accessible.ignored: true
    }
    Item { width: 1; height: form.label ? 5 : 0 }
    Item {
        id: slot
        width: parent.width
        height: childrenRect.height
    }
    Item { width: 1; height: form.message ? 5 : 0 }
    ErrorLine {
        width: parent.width
        text: form.message
    }
}

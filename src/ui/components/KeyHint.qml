import QtQuick
import Tamsel

// The key that does the same as the control it stands in. Decorative.
Rectangle {
    id: hint

    property string key
    property color ink: Theme.textMuted
    property color outline: Theme.borderFaint

    implicitWidth: Theme.keyHint
    implicitHeight: Theme.keyHint
    radius: Theme.radiusSmall
    color: Theme.none
    border { width: 1; color: outline }
    Accessible.ignored: true

    Label {
        anchors.centerIn: parent
        type: Theme.hint
        text: hint.key
        color: hint.ink
        Accessible.ignored: true
    }
}

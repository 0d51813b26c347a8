import QtQuick
import Tamsel

// What a closed key selector shows: the key's name, or what to do, and the mark of a menu.
Item {
    id: face

    property string keyName
    property string placeholder
    readonly property bool truncated: name.truncated

    Label {
        id: name
        anchors.verticalCenter: parent.verticalCenter
        width: chevron.x - 8
        type: face.keyName ? Theme.mono : Theme.body
        text: face.keyName || face.placeholder
        color: face.keyName ? Theme.text : Theme.textMuted
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

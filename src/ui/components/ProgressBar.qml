import QtQuick
import Tamsel

// How much of something is done, from 0 to 1.
Rectangle {
    id: bar

    property real value: 0
    property string label

    readonly property real shown: Math.max(0, Math.min(1, value))

    implicitHeight: 4
    radius: height / 2
    color: Theme.graySoft
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.ignored: !visible

    Rectangle {
        width: Math.round(parent.width * bar.shown)
        height: parent.height
        radius: parent.radius
        color: Theme.accentFill
    }
}

import QtQuick
import QtQuick.Templates as T
import Tamsel

T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    minimumSize: 0.08
    visible: size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        radius: width / 2
        color: bar.pressed ? Theme.borderStrong : Theme.borderFaint
    }
}

import QtQuick
import Tamsel

// An icon of the own set in one colour. Decorative: the control it stands in carries the name.
Image {
    property string symbol
    property int size: Theme.iconRow
    property color color: Theme.textMuted

    source: symbol ? "image://icon/" + symbol + "/" + color.toString().substring(1) : ""
    sourceSize { width: size; height: size }
    width: size
    height: size
    Accessible.ignored: true
}

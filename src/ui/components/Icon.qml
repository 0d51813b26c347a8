import QtQuick
import QtQuick.Controls.impl
import Tamsel

// An icon of the own set in one colour. Decorative: the control it stands in carries the name.
IconImage {
    property string symbol
    property int size: Theme.iconRow

    source: symbol ? Qt.resolvedUrl("../icons/" + symbol + ".svg") : ""
    sourceSize { width: size; height: size }
    width: size
    height: size
    color: Theme.textMuted
    Accessible.ignored: true
}

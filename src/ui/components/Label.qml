import QtQuick
import Tamsel

// A text of the type scale. Plain unless told otherwise: most texts come from data.
Text {
    property TextStyle type: Theme.body

    font: Theme.font(type)
    lineHeight: type.lineHeight
    lineHeightMode: Text.FixedHeight
    color: Theme.text
    elide: Text.ElideRight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}

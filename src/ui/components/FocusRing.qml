import QtQuick
import Tamsel

// The keyboard focus around its parent; `gap` is the space left between, negative for a ring inside.
Rectangle {
    property int gap: 2
    property int parentRadius: Theme.radiusField

    anchors.fill: parent
    anchors.margins: -(gap + border.width)
    radius: parentRadius + gap + border.width
    color: Theme.none
    border { width: Theme.focusWidth; color: Theme.focus }
}

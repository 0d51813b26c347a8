import QtQuick
import Tamsel

// One entry of the type scale; sizes in pixels.
QtObject {
    id: style

    required property int size
    required property int lineHeight
    property int weight: Font.Normal
    property string family: Theme.sansFamily

    readonly property font font: Qt.font({
        family: style.family,
        pixelSize: style.size,
        weight: style.weight
    })
}

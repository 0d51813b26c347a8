import QtQuick

// One entry of the type scale; sizes in pixels. Imports no singleton, so that the theme can be made
// of these.
QtObject {
    required property int size
    required property int lineHeight
    property int weight: Font.Normal
    property bool mono: false
}

import QtQuick
import Tamsel

// The caps of a trigger or chord, in the order given.
Flow {
    id: caps

    property list<string> names
    property bool large: false

    spacing: 4

    Repeater {
        model: caps.names
        KeyCap {
            required property string modelData
            name: modelData
            large: caps.large
        }
    }
}

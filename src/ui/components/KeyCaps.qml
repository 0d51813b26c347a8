import QtQuick
import Tamsel

// The caps of a trigger or chord, in the order given.
Flow {
    id: caps

    // Names of the catalogue or of modifiers.
    property var names: []
    property bool large: false

    spacing: 4

    Repeater {
        model: caps.names
        KeyCap {
            required property string modelData
            name: modelData
            large: parent && (parent as KeyCaps).large
        }
    }
}

import QtQuick
import Tamsel

// A key as it looks on a keyboard: the edge below, the face with its legend on top.
Rectangle {
    id: cap

    // A name of the catalogue or of a modifier.
    required property string name
    property bool large: false

    readonly property bool modifier: KeyLegend.isModifier(name)

    implicitWidth: Math.max(legend.implicitWidth + (large ? 24 : 20), implicitHeight)
    implicitHeight: large ? Theme.capLargeHeight : Theme.capHeight
    radius: Theme.radiusCap
    color: Theme.capEdge
    Accessible.role: Accessible.StaticText
    Accessible.name: name

    Rectangle {
        anchors { fill: parent; leftMargin: 1; topMargin: 1; rightMargin: 1; bottomMargin: 3 }
        radius: Theme.radiusCap - 1
        color: cap.modifier ? Theme.capModFace : Theme.capFace
        border { width: 1; color: Theme.capBorder }

        Label {
            id: legend
            anchors.centerIn: parent
            type: cap.modifier ? (cap.large ? Theme.legendModifierLarge : Theme.legendModifier)
                               : (cap.large ? Theme.legendLarge : Theme.legend)
            text: KeyLegend.of(cap.name)
            color: Theme.capText
            Accessible.ignored: true
        }
    }

    HoverHandler { id: hover }
    Tooltip {
        owner: cap
        text: cap.name
        wanted: hover.hovered
    }
}

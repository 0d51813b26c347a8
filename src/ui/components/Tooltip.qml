import QtQuick
import QtQuick.Templates as T
import Tamsel

// The tooltip of `owner`, made only while it is wanted: there is one for every icon of every row.
Loader {
    id: tooltip

    required property Item owner
    property string text
    property bool wanted: false

    active: wanted && text

    sourceComponent: T.ToolTip {
        parent: tooltip.owner
        x: Math.round((tooltip.owner.width - implicitWidth) / 2)
        y: -implicitHeight - 6
        margins: 6
        leftPadding: 10
        rightPadding: 10
        topPadding: 6
        bottomPadding: 6
        implicitWidth: implicitContentWidth + leftPadding + rightPadding
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        delay: Theme.tooltipDelay
        visible: true
        text: tooltip.text

        contentItem: Label {
            type: Theme.small
            text: tooltip.text
            color: Theme.tooltipText
        }
        background: Rectangle {
            radius: Theme.radiusCap
            color: Theme.tooltipBg
        }
    }
}

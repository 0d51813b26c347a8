import QtQuick
import QtQuick.Templates as T
import Tamsel

T.ToolTip {
    id: popup

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: -implicitHeight - 6
    margins: 6
    leftPadding: 10
    rightPadding: 10
    topPadding: 6
    bottomPadding: 6
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    delay: Theme.tooltipDelay
    closePolicy: T.Popup.NoAutoClose
    visible: true

    contentItem: Label {
        type: Theme.small
        text: popup.text
        color: Theme.tooltipText
    }
    background: Rectangle {
        radius: Theme.radiusCap
        color: Theme.tooltipBg
    }
}

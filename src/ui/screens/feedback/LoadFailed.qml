import QtQuick
import Tamsel

// What stands in place of something that could not be loaded: that first, and what helps.
Column {
    id: view

    // What would be there to say without the failure.
    property alias line: muted.text

    signal retried()

    spacing: Theme.cardGap

    EmptyState {
        width: parent.width
        symbol: "exclamationmark.triangle.fill"
        text: qsTr("Load Failed")
    }
    Button {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Try Again")
        symbol: "arrow.clockwise"
        onClicked: view.retried()
    }
    Label {
        id: muted
        width: parent.width
        visible: text
        color: Theme.textMuted
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.ignored: !visible
    }
}

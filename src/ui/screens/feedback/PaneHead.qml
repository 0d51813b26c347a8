import QtQuick
import Tamsel

// The head of what stands beside the list: a way back where it stands in the list's place.
Item {
    id: head

    property alias text: title.text
    property bool withBack: false
    property int tail: 0

    signal back()

    height: 39

    IconButton {
        x: 10
        anchors.verticalCenter: title.verticalCenter
        visible: head.withBack
        text: qsTr("Back")
        symbol: "back"
        onClicked: head.back()
    }
    Label {
        id: title
        x: head.withBack ? 48 : 18
        y: 12
        width: parent.width - x - 18 - head.tail
        type: Theme.dialogTitle
        Accessible.role: Accessible.Heading
    }
}

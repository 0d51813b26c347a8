import QtQuick
import Tamsel

// A link out of the program; `about` says whose it is to who can't see where it stands.
Item {
    id: link

    property string text
    property string about

    signal clicked()

    implicitWidth: line.width
    implicitHeight: line.height
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: about ? qsTr("%1 (%2)").arg(text).arg(about) : text
    Accessible.focusable: true
    Accessible.onPressAction: link.clicked()
    Keys.onReturnPressed: link.clicked()
    Keys.onEnterPressed: link.clicked()

    Row {
        id: line
        spacing: 4

        Label {
            id: name
            type: Theme.fieldLabel
            text: link.text
            color: Theme.accent
            Accessible.ignored: true
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "external"
            size: 10
            color: Theme.accent
        }
    }
    Rectangle {
        y: parent.height - 1
        width: name.width
        height: 1
        visible: hover.hovered || link.activeFocus
        color: Theme.accent
    }
    FocusRing { visible: link.activeFocus; parentRadius: Theme.radiusSmall }
    HoverHandler { id: hover; cursorShape: Qt.PointingHandCursor }
    TapHandler { onTapped: link.clicked() }
}

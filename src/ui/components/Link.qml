import QtQuick
import QtQuick.Templates as T
import Tamsel

// A link out of the program; `about` says whose it is to who can't see where it stands.
T.AbstractButton {
    id: link

    property string about

    implicitWidth: line.width
    implicitHeight: line.height
    hoverEnabled: true
    Accessible.role: Accessible.Link
    Accessible.name: about ? qsTr("%1 (%2)").arg(text).arg(about) : text
    Accessible.onPressAction: link.clicked()
    Keys.onReturnPressed: link.clicked()
    Keys.onEnterPressed: link.clicked()

    contentItem: Item {
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
    }
    background: Item {
        Rectangle {
            y: parent.height - 1
            width: name.width
            height: 1
            visible: link.hovered || link.visualFocus
            color: Theme.accent
        }
        FocusRing { visible: link.visualFocus; parentRadius: Theme.radiusSmall }
    }
}

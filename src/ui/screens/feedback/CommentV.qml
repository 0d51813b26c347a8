import QtQuick
import Tamsel

// One message of the conversation: the support side's on the left, the user's own on the right.
Item {
    id: view

    required property commentRow row

    readonly property int edge: 18
    readonly property int widest: Math.floor((width - 2 * edge) * 0.84)

    height: bubble.y + bubble.height + 10
    Accessible.role: Accessible.ListItem
    Accessible.name: qsTr("%1, %2: %3").arg(row.isSupport ? who.text : qsTr("You")).arg(row.time)
                                       .arg(row.text)

    Row {
        x: view.row.isSupport ? view.edge : view.width - width - view.edge
        spacing: 5

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: view.row.isSupport
            symbol: "person.badge.shield.checkmark.fill"
            size: Theme.iconInline
            color: Theme.accent
        }
        Label {
            id: who
            visible: view.row.isSupport
            type: Theme.section
            text: qsTr("Support")
            Accessible.ignored: true
        }
        Label {
            width: Math.min(implicitWidth, view.widest - 80)
            type: Theme.small
            text: view.row.time
            color: Theme.textMuted
            Accessible.ignored: true
        }
    }
    Rectangle {
        id: bubble
        x: view.row.isSupport ? view.edge : view.width - width - view.edge
        y: 20
        width: Math.min(message.implicitWidth + 24, view.widest)
        height: message.height + 17
        radius: Theme.radiusPopup
        color: view.row.isSupport ? Theme.graySoft : Theme.accentSoft

        SelectableText {
            id: message
            x: 12
            y: 8
            width: parent.width - 24
            text: view.row.text
            Accessible.ignored: true
        }
    }
}

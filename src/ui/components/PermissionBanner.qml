import QtQuick
import Tamsel

// Says that keys cannot be read, with the button that asks for it.
Rectangle {
    id: banner

    signal requestPermission()

    function focusButton(reason: int): void {
        button.forceActiveFocus(reason);
    }

    implicitHeight: Math.max(64, lines.height + 24)
    radius: Theme.radiusCard
    color: Theme.orangeSoft
    border { width: 1; color: Theme.orange }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title.text + " " + text.text
    Accessible.ignored: !visible

    Icon {
        x: 15
        anchors.verticalCenter: parent.verticalCenter
        symbol: "exclamationmark.triangle.fill"
        size: Theme.iconBanner
        color: Theme.orange
    }
    Column {
        id: lines
        x: 51
        width: button.x - x - 16
        anchors.verticalCenter: parent.verticalCenter

        Label {
            id: title
            width: parent.width
            type: Theme.heading
            text: qsTr("Input Monitoring Permission")
            wrapMode: Text.Wrap
        }
        Label {
            id: text
            width: parent.width
            text: qsTr("Required to monitor and modify keyboard events")
            color: Theme.textMuted
            wrapMode: Text.Wrap
        }
    }
    Button {
        id: button
        anchors { right: parent.right; rightMargin: 15; verticalCenter: parent.verticalCenter }
        kind: Button.Primary
        text: qsTr("Open System Settings")
        onClicked: banner.requestPermission()
    }
}

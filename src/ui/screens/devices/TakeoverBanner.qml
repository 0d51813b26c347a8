import QtQuick
import Tamsel

// Asks whether a mouse that was taken over still works, while the seconds run.
Rectangle {
    id: banner

    required property DeviceMgrVM devices

    // Told to assistive technology when it appears and halfway, not every second.
    property string announced

    readonly property alias firstButton: cancel
    readonly property alias lastButton: confirm

    // The banner goes, and one of its buttons has the keyboard.
    signal focusLeft()

    function follow(): void {
        if (!devices.isConfirmationPending && (cancel.activeFocus || confirm.activeFocus))
            focusLeft();
        visible = devices.isConfirmationPending;
    }

    implicitHeight: Math.max(68, text.height + 30)
    visible: false
    radius: Theme.radiusCard
    color: Theme.orangeSoft
    border { width: 1; color: Theme.orange }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: announced
    Accessible.ignored: !visible

    Component.onCompleted: {
        announced = devices.confirmationText;
        follow();
    }

    Connections {
        target: banner.devices
        function onConfirmationChanged(): void {
            if (banner.devices.remainingSeconds % 5 === 0)
                banner.announced = banner.devices.confirmationText;
            banner.follow();
        }
    }

    Icon {
        x: 15
        anchors.verticalCenter: text.verticalCenter
        symbol: "exclamationmark.triangle.fill"
        size: Theme.iconBanner
        color: Theme.orange
    }
    Label {
        id: text
        x: 51
        y: Math.round((parent.height - 4 - height) / 2)
        width: cancel.x - x - 16
        type: Theme.button
        lineHeight: 19
        text: banner.devices.confirmationText
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }
    Button {
        id: cancel
        anchors { right: confirm.left; rightMargin: 14; verticalCenter: text.verticalCenter }
        text: qsTr("Cancel")
        onClicked: banner.devices.cancelMouseTakeover()
    }
    Button {
        id: confirm
        anchors { right: parent.right; rightMargin: 15; verticalCenter: text.verticalCenter }
        kind: Button.Primary
        text: qsTr("Confirm")
        onClicked: banner.devices.confirmMouseTakeover()
    }
    // The time that is left, in ten steps.
    Rectangle {
        x: 15
        y: parent.height - 11
        width: parent.width - 2 * x
        height: 3
        radius: 1.5
        color: Theme.pressed

        Rectangle {
            width: parent.width * banner.devices.remainingSeconds / 10
            height: parent.height
            radius: parent.radius
            color: Theme.orange
        }
    }
}

import QtQuick
import Tamsel

// What the updater is at, the one thing to do about it, and whether it looks by itself.
Card {
    id: row

    required property AboutVM about

    readonly property int state: about.updateState
    readonly property string symbol: {
        switch (row.state) {
        case AboutVM.UpToDate:
        case AboutVM.Ready:
            return "checkmark.circle.fill";
        case AboutVM.UpdateAvailable:
            return "arrow.down.circle.fill";
        case AboutVM.Failed:
            return "exclamationmark.triangle.fill";
        }
        return "";
    }
    readonly property string line: {
        switch (row.state) {
        case AboutVM.Checking:
            return qsTr("Checking...");
        case AboutVM.UpToDate:
            return qsTr("Up to date");
        case AboutVM.UpdateAvailable:
            return "v" + about.updateStatus.version;
        case AboutVM.Downloading:
            return qsTr("Downloading...");
        case AboutVM.Ready:
            return qsTr("Ready — admin password required to install");
        case AboutVM.Failed:
            return about.updateStatus.message;
        }
        return about.updatedBy;
    }
    readonly property string action: {
        switch (row.state) {
        case AboutVM.UpdateAvailable:
            return qsTr("Install");
        case AboutVM.Ready:
            return qsTr("Restart");
        case AboutVM.Checking:
        case AboutVM.Downloading:
            return "";
        }
        return qsTr("Check Update");
    }
    readonly property color ink: {
        switch (row.state) {
        case AboutVM.UpToDate:
        case AboutVM.Ready:
            return Theme.green;
        case AboutVM.UpdateAvailable:
            return Theme.accent;
        case AboutVM.Failed:
            return Theme.red;
        }
        return Theme.textMuted;
    }
    readonly property bool isLoading: state === AboutVM.Downloading

    implicitHeight: Math.max(50, shown.implicitHeight + 12)

    Spinner {
        id: spinner
        x: 17
        anchors.verticalCenter: parent.verticalCenter
        visible: row.state === AboutVM.Checking
        color: Theme.accent
    }
    Icon {
        id: icon
        x: 17
        anchors.verticalCenter: parent.verticalCenter
        visible: row.symbol
        symbol: row.symbol
        size: Theme.iconSmall
        color: row.ink
    }
    Label {
        id: shown
        readonly property int room: (button.visible ? button.x : divider.x) - x - 12

        x: spinner.visible ? 40 : icon.visible ? 38 : 17
        width: row.isLoading ? Math.min(implicitWidth, room) : room
        anchors.verticalCenter: parent.verticalCenter
        type: row.symbol === "" ? Theme.body : row.state === AboutVM.UpdateAvailable ? Theme.formLabel
                                                                               : Theme.button
        text: row.line
        color: row.ink
        wrapMode: Text.Wrap
        maximumLineCount: 3
        Accessible.role: Accessible.AlertMessage
        Accessible.ignored: !text
    }
    ProgressBar {
        id: bar
        anchors { left: shown.right; leftMargin: 12; verticalCenter: parent.verticalCenter }
        width: 110
        visible: row.isLoading
        value: row.about.updateStatus.progress
        label: shown.text
    }
    Label {
        anchors { left: bar.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        visible: row.isLoading
        type: Theme.mono
        text: Math.trunc(row.about.updateStatus.progress * 100) + "%"
        Accessible.ignored: !visible
    }
    Button {
        id: button
        anchors { right: divider.left; rightMargin: Theme.cardPadding }
        anchors.verticalCenter: parent.verticalCenter
        visible: row.action
        kind: row.state === AboutVM.UpdateAvailable || row.state === AboutVM.Ready
              ? Button.Primary : Button.Secondary
        text: row.action
        enabled: !row.about.updatedBy
        Accessible.description: row.about.updatedBy
        onClicked: row.about.actOnUpdate()

        Tooltip {
            owner: button
            text: row.about.updatedBy || "U"
            wanted: help.hovered
        }
    }
    Item { // A button that is off does not notice the pointer.
        anchors.fill: button
        HoverHandler { id: help }
    }
    Rectangle {
        id: divider
        anchors { right: label.left; rightMargin: 15; verticalCenter: parent.verticalCenter }
        width: 1
        height: 22
        color: Theme.border
    }
    Label {
        id: label
        anchors { right: toggle.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        text: toggle.text
        Accessible.ignored: true
        TapHandler { onTapped: toggle.flip() }
    }
    Switch {
        id: toggle
        anchors { right: parent.right; rightMargin: 17; verticalCenter: parent.verticalCenter }
        text: qsTr("Disable Auto Check")
        checked: row.about.disableAutoCheck
        onToggled: {
            const wanted = checked;
            checked = Qt.binding(() => row.about.disableAutoCheck);
            row.about.disableAutoCheck = wanted;
        }
    }
}

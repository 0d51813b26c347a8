import QtQuick
import Tamsel

// One mapping: from, to, delete and on or off. It shows its row and asks for changes.
FocusScope {
    id: view

    enum Control { From, RecordFrom, To, RecordTo, Delete, Switch }

    required property mappingRow row
    required property int fromCode
    required property int toCode
    required property int index
    property bool readOnly: false
    property Recording recording: null

    readonly property string title: qsTr("%1 to %2").arg(row.fromName || qsTr("no key"))
                                                    .arg(row.toName || qsTr("no key"))

    signal removeRequested(int control)
    signal toggled(bool on)
    signal fromPicked(int code)
    signal toPicked(int code)

    function focusControl(control: int): void {
        const reason = Qt.TabFocusReason;
        switch (control) {
        case MappingRowV.From:
            from.focusSelector(reason);
            break;
        case MappingRowV.RecordFrom:
            from.focusRecordButton(reason);
            break;
        case MappingRowV.To:
            to.focusSelector(reason);
            break;
        case MappingRowV.RecordTo:
            to.focusRecordButton(reason);
            break;
        case MappingRowV.Delete:
            remove.forceActiveFocus(reason);
            break;
        default:
            onOff.forceActiveFocus(reason);
        }
    }

    function focusedControl(): int {
        return from.activeFocus ? (from.recordButton.activeFocus ? MappingRowV.RecordFrom
                                                                 : MappingRowV.From)
             : to.activeFocus ? (to.recordButton.activeFocus ? MappingRowV.RecordTo : MappingRowV.To)
             : remove.activeFocus ? MappingRowV.Delete : MappingRowV.Switch;
    }

    height: Theme.mappingRowHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Keys.onDeletePressed: {
        if (!readOnly)
            removeRequested(focusedControl());
    }

    Rectangle {
        width: parent.width
        height: 1
        visible: view.index > 0
        color: Theme.border
    }

    Row {
        id: line

        readonly property int arrowWidth: Theme.compact ? 30 : 36
        readonly property int actionGap: Theme.compact ? 16 : 22
        readonly property int switchGap: Theme.compact ? 7 : 10
        // What the two fields share.
        readonly property int room: width - arrowWidth - actionGap - Theme.controlHeight - switchGap
                                    - Theme.switchSize.width

        x: Theme.cardPadding
        y: view.index > 0 ? 1 : 0
        width: parent.width - 2 * x
        height: parent.height - y

        KeyField {
            id: from
            anchors.verticalCenter: parent.verticalCenter
            width: Math.ceil(line.room / 2)
            role: qsTr("From")
            keyCode: view.fromCode
            keyName: view.row.fromName
            readOnly: view.readOnly
            recording: view.recording
            onPicked: code => view.fromPicked(code)
            onRecorded: code => view.fromPicked(code)
        }
        Item {
            width: line.arrowWidth
            height: parent.height
            Icon {
                anchors.centerIn: parent
                symbol: "arrow.right"
                size: Theme.iconSmall
            }
        }
        KeyField {
            id: to
            anchors.verticalCenter: parent.verticalCenter
            width: Math.floor(line.room / 2)
            role: qsTr("To")
            keyCode: view.toCode
            keyName: view.row.toName
            readOnly: view.readOnly
            recording: view.recording
            onPicked: code => view.toPicked(code)
            onRecorded: code => view.toPicked(code)
        }
        Item { width: line.actionGap; height: 1 }
        Item {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.controlHeight
            height: Theme.controlHeight
            IconButton {
                id: remove
                visible: !view.readOnly
                symbol: "delete"
                text: qsTr("Delete %1").arg(view.title)
                onClicked: view.removeRequested(MappingRowV.Delete)
            }
        }
        Item { width: line.switchGap; height: 1 }
        Switch {
            id: onOff
            anchors.verticalCenter: parent.verticalCenter
            text: view.title
            checked: view.row.enabled
            onToggled: {
                const wanted = checked;
                // The model decides; the switch goes on showing what it says.
                checked = Qt.binding(() => view.row.enabled);
                view.toggled(wanted);
            }
        }
    }
}

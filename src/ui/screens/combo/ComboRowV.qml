import QtQuick
import Tamsel

// One combo: its keys, what it does, its marks, and edit, delete and on or off. It shows its row
// and asks for changes.
FocusScope {
    id: view

    required property comboRow row
    // The last row of its card, and the first.
    property bool isFirst: false
    property bool isLast: false

    readonly property string title: text.title
    // The Tab stops from left to right.
    readonly property var stops: [text.link, keyMark, mappingMark, edit, remove, onOff]

    signal editRequested()
    signal removeRequested()
    signal toggled(bool on)
    signal linkOpened()

    implicitHeight: Theme.compact ? caps.height + 8 + text.height + 2 * 9
                                  : Math.max(text.height, caps.height) + 2 * 10 + 1
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Keys.onReturnPressed: editRequested()
    Keys.onEnterPressed: editRequested()
    Keys.onDeletePressed: if (!row.builtIn) removeRequested()

    TapHandler { onDoubleTapped: view.editRequested() }

    KeyCaps {
        id: caps
        x: Theme.cardPadding
        y: Theme.compact ? 9 : Math.round((view.height - height) / 2)
        width: Theme.compact ? parent.width - 2 * x : Theme.comboCapsWidth
        names: view.row.keys
    }
    ComboText {
        id: text
        x: Theme.compact ? Theme.cardPadding : Theme.cardPadding + Theme.comboCapsWidth + 14
        y: Theme.compact ? caps.y + caps.height + 8 : Math.round((view.height - height) / 2)
        width: controls.x - x - 10
        row: view.row
        onLinkOpened: view.linkOpened()
    }

    Row {
        id: controls
        anchors { right: parent.right; rightMargin: Theme.cardPadding }
        y: Math.round(text.y + (text.height - height) / 2)

        ConflictMark {
            id: keyMark
            anchors.verticalCenter: parent.verticalCenter
            visible: view.row.keyConflict
            symbol: "exclamationmark.triangle.fill"
            ink: Theme.orange
            message: qsTr("Key conflict: same keys used by another combo")
            detail: view.row.conflictsWith
        }
        ConflictMark {
            id: mappingMark
            anchors.verticalCenter: parent.verticalCenter
            visible: view.row.mappingConflict
            symbol: "keyboard.badge.ellipsis"
            ink: Theme.red
            size: 21
            message: qsTr("Trigger key is remapped in Mapping — this combo will not trigger")
            detail: qsTr("%1 to %2").arg(view.row.keys[view.row.keys.length - 1])
                                    .arg(view.row.remappedTo || qsTr("no key"))
        }
        Item { width: 14; height: 1 }
        IconButton {
            id: edit
            symbol: "edit"
            text: qsTr("Edit %1").arg(view.title)
            onClicked: view.editRequested()
        }
        Item {
            width: Theme.controlHeight
            height: Theme.controlHeight
            IconButton {
                id: remove
                visible: !view.row.builtIn
                symbol: "delete"
                text: qsTr("Delete %1").arg(view.title)
                onClicked: view.removeRequested()
            }
        }
        Item { width: 8; height: 1 }
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

import QtQuick
import Tamsel

// What a combo does when its keys go up again, if anything.
EditorSection {
    id: section

    required property ShortcutEditVM editor

    Item {
        width: parent.width
        height: Theme.switchSize.height + 4

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - toggle.width - 12
            type: Theme.formLabel
            text: toggle.text
            Accessible.ignored: true
        }
        Switch {
            id: toggle
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            text: qsTr("Run a second action on key release (hold mode)")
            checked: section.editor.holdMode
            onToggled: {
                section.editor.holdMode = checked;
                checked = Qt.binding(() => section.editor.holdMode);
            }
        }
    }
    Item {
        width: parent.width
        height: value.height
        visible: section.editor.holdMode

        SegmentedControl {
            id: type
            y: 21
            label: qsTr("Release action")
            choices: [{ value: ShortcutEditVM.Command,
                        text: section.editor.titleOf(ShortcutEditVM.Command) },
                      { value: ShortcutEditVM.OpenURL,
                        text: section.editor.titleOf(ShortcutEditVM.OpenURL) }]
            current: section.editor.upAction
            onChosen: action => section.editor.upAction = action
        }
        EditorValue {
            id: value
            x: type.width + 12
            width: parent.width - x
            editor: section.editor
            release: true
        }
    }
}

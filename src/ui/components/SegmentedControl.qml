import QtQuick
import QtQuick.Templates as T
import Tamsel

// One of a few choices, all in sight. One Tab stop; Left and Right choose.
Rectangle {
    id: control

    // What can be chosen, as { value, text }.
    required property var choices
    required property int current
    property string label

    readonly property int place: choices.findIndex(choice => choice.value === current)

    signal chosen(int value)

    function step(by: int): void {
        const next = place + by;
        if (next < 0 || next >= choices.length)
            return;
        chosen(choices[next].value);
        (cells.itemAt(next) as Item).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: line.width + 6
    implicitHeight: Theme.segmentHeight
    radius: Theme.radiusField + 1
    color: Theme.graySoft
    border { width: 1; color: Theme.border }
    Accessible.role: Accessible.Grouping
    Accessible.name: label
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Row {
        id: line
        x: 3
        y: 3
        height: parent.height - 6

        Repeater {
            id: cells
            model: control.choices

            T.AbstractButton {
                id: cell

                required property var modelData
                required property int index

                readonly property bool isChosen: index === control.place

                height: line.height
                implicitWidth: name.implicitWidth + 26
                text: modelData.text
                hoverEnabled: true
                focusPolicy: isChosen || (control.place < 0 && index === 0) ? Qt.StrongFocus
                                                                            : Qt.ClickFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isChosen
                Accessible.onPressAction: cell.clicked()
                onClicked: control.chosen(modelData.value)

                contentItem: Label {
                    id: name
                    horizontalAlignment: Text.AlignHCenter
                    type: cell.isChosen ? Theme.formLabel : Theme.button
                    text: cell.text
                    color: cell.isChosen || cell.hovered ? Theme.text : Theme.textMuted
                    Accessible.ignored: true
                }
                background: Rectangle {
                    radius: Theme.radiusCap + 1
                    color: cell.isChosen ? Theme.surface : Theme.none
                    border { width: cell.isChosen ? 1 : 0; color: Theme.borderStrong }

                    FocusRing { visible: cell.visualFocus; gap: 1; parentRadius: parent.radius }
                }
            }
        }
    }
}

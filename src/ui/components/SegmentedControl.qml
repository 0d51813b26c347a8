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

            T.RadioButton {
                id: cell

                required property var modelData
                required property int index

                readonly property SegmentedControl owner: parent ? parent.parent as SegmentedControl
                                                                 : null
                readonly property int chosenPlace: owner ? owner.place : -1
                readonly property bool isChosen: index === chosenPlace

                height: parent ? parent.height : 0
                implicitWidth: contentItem.implicitWidth + 26
                text: modelData.text
                hoverEnabled: true
                focusPolicy: isChosen || (chosenPlace < 0 && index === 0) ? Qt.StrongFocus
                                                                          : Qt.ClickFocus
                autoExclusive: false
                checked: isChosen
                // The model decides; the control goes on showing what it says.
                onCheckedChanged: if (checked !== isChosen) checked = Qt.binding(() => isChosen)
                Accessible.name: text
                Accessible.onPressAction: cell.clicked()
                onClicked: owner.chosen(modelData.value)

                contentItem: Label {
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

import QtQuick
import QtQuick.Templates as T
import Tamsel

// What the feedback is about. One Tab stop; Left and Right choose.
Row {
    id: choice

    required property FeedbackVM feedback

    function step(by: int): void {
        for (let place = 0; place < cells.count; ++place) {
            const next = cells.itemAt(place + by) as T.RadioButton;
            if ((cells.itemAt(place) as T.RadioButton).activeFocus && next) {
                next.clicked();
                next.forceActiveFocus(Qt.TabFocusReason);
                return;
            }
        }
    }

    spacing: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Category")
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Repeater {
        id: cells
        model: GadgetListModel {
            source: choice.feedback
            list: "cats"
            key: "key"
        }

        T.RadioButton {
            id: cell

            required property ticketCategory row

            readonly property CategoryChoice owner: parent as CategoryChoice
            readonly property bool on: owner && owner.feedback.category === row.key
            readonly property color ink: on ? Theme.textOnAccent : Theme.text

            width: owner ? (owner.width - 3 * owner.spacing) / 4 : 0
            height: Theme.fieldHeight
            text: row.label
            hoverEnabled: true
            enabled: owner && !owner.feedback.isSubmitting
            focusPolicy: on || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            autoExclusive: false
            checked: on
            // The model decides; the choice goes on showing what it says.
            onCheckedChanged: if (checked !== on) checked = Qt.binding(() => on)
            Accessible.name: text
            Accessible.onPressAction: cell.clicked()
            onClicked: owner.feedback.category = row.key

            contentItem: Item {
                Row {
                    anchors.centerIn: parent
                    spacing: 7

                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: cell.row.symbol
                        size: Theme.iconInline
                        color: cell.ink
                    }
                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        type: cell.on ? Theme.formLabel : Theme.button
                        text: cell.text
                        color: cell.ink
                        Accessible.ignored: true
                    }
                }
            }
            background: Rectangle {
                radius: Theme.radiusField
                color: cell.on ? (cell.hovered ? Theme.accentHover : Theme.accentFill)
                     : cell.down ? Theme.pressed : cell.hovered ? Theme.hover : Theme.surface
                border { width: cell.on ? 0 : 1; color: Theme.borderStrong }

                FocusRing { visible: cell.visualFocus; gap: 1 }
            }
        }
    }
}

import QtQuick
import Tamsel

// What the machine lacks and what helps: commands to copy, and the button that does the same.
Dialog {
    id: view

    required property SettingsGuideVM guide

    width: Math.min(Theme.guideWidth, parent.width - 2 * Theme.dialogMargin)
    title: guide.title || qsTr("Looking at this computer...")
    onOpened: closeButton.forceActiveFocus(Qt.PopupFocusReason)
    onCanceled: guide.close()

    Column {
        x: view.edge
        width: parent.width - 2 * x
        bottomPadding: 18
        spacing: 8

        Repeater {
            model: GadgetListModel {
                source: view.guide
                list: "findings"
                key: "id"
            }
            GuideFindingRow { width: parent ? parent.width : 0 }
        }
        Label {
            width: parent.width
            topPadding: 6
            visible: !view.guide.isLooking
            type: Theme.formLabel
            text: steps.count > 0 ? qsTr("What helps") : qsTr("Nothing is missing here.")
            Accessible.role: Accessible.Heading
        }
        GuideSteps {
            id: steps
            width: parent.width
            guide: view.guide
        }
    }

    buttons: [
        Button {
            text: qsTr("Look Again")
            symbol: "arrow.clockwise"
            onClicked: view.guide.lookAgain()
        },
        Button {
            id: closeButton
            text: qsTr("Close")
            onClicked: view.guide.close()
        },
        Button {
            visible: text
            kind: Button.Primary
            text: view.guide.actionTitle
            onClicked: view.guide.act()
        }
    ]
}

import QtQuick
import QtQuick.Templates as T
import Tamsel

// One tab of a TabBar; `key` is the plain key that chooses it too.
T.TabButton {
    id: tab

    property string key
    property bool isChosen: false

    implicitWidth: implicitContentWidth + 28
    hoverEnabled: true
    focusPolicy: isChosen ? Qt.StrongFocus : Qt.ClickFocus
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isChosen
    Accessible.onPressAction: tab.clicked()
    Keys.onReturnPressed: tab.clicked()
    Keys.onEnterPressed: tab.clicked()

    contentItem: Label {
        horizontalAlignment: Text.AlignHCenter
        type: tab.isChosen ? Theme.formLabel : Theme.button
        text: tab.text
        color: tab.isChosen || tab.hovered ? Theme.text : Theme.textMuted
        Accessible.ignored: true
    }
    background: Item {
        Rectangle {
            x: 10
            y: parent.height - height
            width: parent.width - 2 * x
            height: 3
            radius: 1.5
            visible: tab.isChosen
            color: Theme.accentFill
        }
        Item {
            x: 4
            y: 6
            width: parent.width - 2 * x
            height: parent.height - 15

            FocusRing { visible: tab.visualFocus; gap: 0; parentRadius: Theme.radiusCap - 2 }
        }
    }

    Tooltip {
        owner: tab
        text: tab.key
        wanted: tab.hovered || tab.visualFocus
    }
}

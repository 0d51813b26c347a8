import QtQuick
import Tamsel

// A setting that is on or off; the whole row takes the click. `checked` shows what the model says.
Item {
    id: row

    property string symbol
    property string text
    property bool checked: false

    signal toggled(bool on)

    height: Theme.settingsRowHeight

    Icon {
        x: 1 + Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        symbol: row.symbol
    }
    Label {
        x: 46
        width: control.x - x - 12
        anchors.verticalCenter: parent.verticalCenter
        text: row.text
        Accessible.ignored: true
    }
    TapHandler { onTapped: control.flip() }
    Switch {
        id: control
        anchors {
            right: parent.right
            rightMargin: 1 + Theme.cardPadding
            verticalCenter: parent.verticalCenter
        }
        text: row.text
        checked: row.checked
        onToggled: {
            const wanted = checked;
            checked = Qt.binding(() => row.checked);
            row.toggled(wanted);
        }
    }
}

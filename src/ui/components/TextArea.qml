import QtQuick
import QtQuick.Templates as T
import Tamsel

// Some lines of text, one high at first and at most `maxLines`, then it scrolls. Return is typed,
// Tab leaves.
FocusScope {
    id: area

    property string label
    property string text
    property string errorText
    property string placeholderText
    property bool readOnly: false
    property int maxLines: 4

    readonly property bool error: errorText
    readonly property int frame: Theme.fieldHeight - Theme.body.lineHeight

    signal edited(string text)

    implicitHeight: Math.min(edit.contentHeight, maxLines * metrics.height) + frame

    FontMetrics { id: metrics; font: edit.font }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusField
        color: Theme.field
        border {
            width: edit.activeFocus || area.error ? Theme.focusWidth : 1
            color: area.error ? Theme.red : edit.activeFocus ? Theme.focus : Theme.borderStrong
        }
    }
    Flickable {
        anchors { fill: parent; margins: area.frame / 2; leftMargin: 12; rightMargin: 8 }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollBar {}

        T.TextArea.flickable: T.TextArea {
            id: edit
            focus: true
            padding: 0
            rightPadding: 12
            font: Theme.font(Theme.body)
            color: Theme.text
            selectionColor: Theme.accentFill
            selectedTextColor: Theme.textOnAccent
            selectByMouse: true
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            text: area.text
            readOnly: area.readOnly
            Accessible.name: area.label
            Accessible.description: area.errorText
            KeyNavigation.priority: KeyNavigation.BeforeItem
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false)
                                       .forceActiveFocus(Qt.BacktabFocusReason)
            onTextChanged: if (text !== area.text) area.edited(text)

            Label {
                width: parent.width
                visible: !edit.length && !edit.preeditText
                text: area.placeholderText
                color: Theme.textMuted
                Accessible.ignored: true
            }
        }
    }
}

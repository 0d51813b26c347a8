import QtQuick
import QtQuick.Templates as T
import Tamsel

// The sections and entries of the key selector's menu.
ListView {
    id: list

    required property int keyCode

    signal picked(int code)

    // Shows only the keys whose names have this text. Without its model meanwhile: it may be
    // making an entry that is about to go.
    function narrow(text: string): void {
        model = null;
        KeyCatalogue.filter = text;
        model = KeyCatalogue;
        currentIndex = count > 0 ? 0 : -1;
        positionViewAtBeginning();
    }

    function chooseCurrent(): void {
        if (currentIndex >= 0)
            picked(KeyCatalogue.codeAt(currentIndex));
    }

    clip: true
    model: KeyCatalogue
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    keyNavigationEnabled: false
    bottomMargin: 6
    // Assistive technology reaches every entry, not only those in sight; there are under 200.
    cacheBuffer: 200 * Theme.menuEntryHeight
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Keys")

    section.property: "section"
    section.delegate: Item {
        id: section
        required property string section

        width: parent ? parent.width : 0
        height: Theme.menuSectionHeight

        Rectangle {
            y: 4
            width: parent.width
            height: 1
            visible: section.y > 0
            color: Theme.border
        }
        Label {
            x: 13
            y: 13
            width: parent.width - 2 * x
            type: Theme.section
            text: section.section
            color: Theme.textMuted
        }
    }

    delegate: KeySelectorEntry {
        required property int index
        required property int code
        required property string name

        readonly property KeySelectorList view: ListView.view as KeySelectorList

        width: view ? view.width : 0
        text: name
        current: view && code === view.keyCode
        highlighted: ListView.isCurrentItem
        onClicked: view.picked(code)
    }

    Label {
        x: 13
        y: 13
        visible: list.count === 0
        text: qsTr("No key has this name")
        color: Theme.textMuted
    }

    T.ScrollBar.vertical: ScrollBar {}
}

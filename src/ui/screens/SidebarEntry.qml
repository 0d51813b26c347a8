import QtQuick
import Tamsel

// One screen, in the order of MainVM.MenuItem; the digit that chooses it is its place.
SidebarItem {
    id: entry

    required property MainVM main
    required property int place
    // The screen's file.
    required property string page

    width: parent.width
    keyHint: String(place + 1)
    selected: main.selected === place
    onClicked: main.selected = place
}

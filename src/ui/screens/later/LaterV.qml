import QtQuick
import Tamsel

// Stands where a screen will be.
Page {
    id: page

    Card {
        width: parent.width
        height: 180

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.cardPadding
            symbol: "sparkles"
            text: qsTr("This screen arrives in a later version.")
        }
    }
}

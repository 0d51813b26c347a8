import QtQuick
import QtQuick.Templates as T
import Tamsel

// The events under a fixed header, the newest last and in sight unless the user scrolled up.
Card {
    id: table

    required property KeyViewerVM viewer

    readonly property list<real> shares: [0.16, 0.28, 0.13, 0.18, 0.25]
    readonly property list<string> titles: [qsTr("Event"), qsTr("Key Name"), qsTr("Device"),
                                            qsTr("Action"), qsTr("Output")]

    Row {
        id: header
        x: 1
        width: parent.width - 2
        height: 33

        Repeater {
            model: table.titles
            Label {
                required property string modelData
                required property int index

                readonly property KeyViewerTable owner: parent ? parent.parent as KeyViewerTable
                                                               : null

                width: owner ? owner.shares[index] * parent.width : 0
                height: parent ? parent.height : 0
                leftPadding: 12
                type: Theme.section
                text: modelData
                color: Theme.textMuted
            }
        }
    }
    ListView {
        id: list

        // Whether the user wants the newest in sight.
        property bool following: true

        function follow(): void {
            if (following)
                positionViewAtEnd();
        }

        x: 1
        y: header.height
        width: parent.width - 2
        height: parent.height - y - 1
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        reuseItems: true
        activeFocusOnTab: false
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Key events")
        onMovingChanged: if (!moving) following = atYEnd
        onHeightChanged: follow()
        T.ScrollBar.vertical: ScrollBar {
            onPressedChanged: if (!pressed) list.following = list.atYEnd
        }

        // Follows once for all the events of half a frame.
        Timer {
            id: settled
            interval: 8
            onTriggered: list.follow()
        }

        model: GadgetListModel {
            source: table.viewer
            list: "events"
            key: "id"
            onRowsInserted: settled.start()
        }
        delegate: KeyViewerRow {
            readonly property KeyViewerTable owner: ListView.view
                                                    ? ListView.view.parent as KeyViewerTable : null

            width: ListView.view ? ListView.view.width : 0
            // What waits for its next row is on no screen, for assistive technology either.
            ListView.onPooled: visible = false
            ListView.onReused: visible = true
            shares: owner ? owner.shares : []
        }
    }
    EmptyState {
        anchors.centerIn: list
        width: parent.width - 2 * Theme.cardPadding
        visible: list.count === 0
        symbol: "keyboard"
        text: qsTr("No events yet. Press any key to start.")
    }
}

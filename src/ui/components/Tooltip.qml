import QtQuick

// The tooltip of `owner`, made only while it is wanted: there is one for every icon of every row.
Loader {
    required property Item owner
    property string text
    property bool wanted: false

    readonly property bool due: wanted && text

    onDueChanged: {
        if (due)
            setSource(Qt.resolvedUrl("TooltipPopup.qml"), { parent: owner, text: text });
        else
            source = "";
    }
}

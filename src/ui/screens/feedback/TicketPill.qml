import QtQuick
import Tamsel

// A ticket's state.
StatusPill {
    required property string status

    text: status === "pending" ? qsTr("pending") : status === "replied" ? qsTr("replied")
        : status === "closed" ? qsTr("closed") : status
    ink: status === "pending" ? Theme.orange : status === "replied" ? Theme.blue : Theme.textMuted
    tint: status === "pending" ? Theme.orangeSoft : status === "replied" ? Theme.blueSoft
                                                                         : Theme.graySoft
}

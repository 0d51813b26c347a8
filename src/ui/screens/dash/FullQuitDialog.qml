import QtQuick
import Tamsel

QuestionDialog {
    required property DashboardVM dashboard

    title: qsTr("Full Quit")
    text: qsTr("This will stop the daemon and quit Tamsel. Keyboard remapping will be disabled until you reopen Tamsel.")
    yes: qsTr("Quit and Stop Daemon")
    onConfirmed: dashboard.fullQuit()
    onCanceled: dashboard.showFullQuitConfirm = false
}

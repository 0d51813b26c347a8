import QtQuick
import Tamsel

QuestionDialog {
    required property AboutVM about

    title: qsTr("Uninstall Tamsel?")
    text: qsTr("This will unregister the keyboard driver and daemon service.")
    yes: qsTr("Uninstall")
    onConfirmed: about.uninstall()
    onCanceled: about.showUninstallConfirm = false
}

import QtQuick
import QtQuick.Templates as T
import Tamsel

// On and off by fill, knob size and knob place. `checked` shows what the model says: whoever uses
// a switch binds it and asks the model for the change in onToggled.
T.Switch {
    id: control

    property size size: Theme.switchSize

    readonly property bool touched: hovered || activeFocus

    function flip(): void {
        toggle();
        toggled();
    }

    implicitWidth: size.width
    implicitHeight: size.height
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    // The template's own actions change the look alone, without the signal.
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()
    Keys.onReturnPressed: control.flip()
    Keys.onEnterPressed: control.flip()

    indicator: Rectangle {
        implicitWidth: control.size.width
        implicitHeight: control.size.height
        radius: height / 2
        color: !control.enabled ? Theme.graySoft
             : !control.checked ? (control.hovered ? Theme.hover : Theme.none)
             : control.down ? Theme.accentPressed
             : control.hovered ? Theme.accentHover : Theme.accentFill
        border {
            width: control.checked ? 0 : 1
            color: control.enabled ? Theme.borderStrong : Theme.border
        }

        Rectangle {
            readonly property int margin: control.checked ? 3 : 5

            x: control.checked ? parent.width - width - margin : margin
            y: margin
            width: parent.height - 2 * margin
            height: width
            radius: width / 2
            color: !control.enabled ? Theme.textDisabled
                 : control.checked ? Theme.textOnAccent : Theme.borderStrong
            Behavior on x {
                enabled: control.touched
                NumberAnimation { duration: Theme.motion }
            }
        }

        FocusRing {
            visible: control.visualFocus
            parentRadius: parent.radius
        }
    }
}

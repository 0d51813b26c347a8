import QtQuick
import Tamsel

// Something runs whose end is not known.
Icon {
    id: spinner

    symbol: "arrow.clockwise"
    size: Theme.iconSmall

    RotationAnimation on rotation {
        running: spinner.visible
        from: 0
        to: 360
        duration: 1000
        loops: Animation.Infinite
    }
}

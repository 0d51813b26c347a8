import QtQuick
import Tamsel

Rectangle {
    color: Theme.surface
    radius: Theme.radiusCard
    border { width: 1; color: Theme.border }
}

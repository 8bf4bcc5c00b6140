import QtQuick
import Tavero.Components

// How much of the whole: a slim bar with round ends.
Rectangle {
    id: bar

    required property real level // 0 to 1
    required property color fill

    color: Theme.track
    implicitHeight: 4
    radius: height / 2

    Rectangle {
        color: bar.fill
        height: parent.height
        radius: parent.radius
        visible: bar.level > 0
        width: Math.max(height, bar.level * parent.width)
    }
}

import QtQuick
import Tavero.Components
import Tavero.Window

// The last minute, between hairlines for nothing and for all.
Item {
    id: curves

    required property CardModel card

    implicitHeight: 64

    Rectangle {
        color: Theme.track
        height: 1
        width: parent.width
    }
    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.track
        height: 1
        width: parent.width
    }
    Sparkline {
        anchors.fill: parent
        color: curves.card.uploadColor
        isDark: Theme.isDark
        series: curves.card.uploadSeries
    }
    Sparkline {
        anchors.fill: parent
        color: curves.card.color
        isDark: Theme.isDark
        series: curves.card.series
    }
}

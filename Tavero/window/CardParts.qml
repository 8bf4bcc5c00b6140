import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// What the figure is made of: the cores of the CPU, the parts of the memory.
ColumnLayout {
    id: parts

    required property CardModel card

    spacing: 10

    RowLayout {
        spacing: Theme.gap
        visible: parts.card.cores.length > 0

        LevelColumns {
            Layout.fillWidth: true
            Layout.preferredHeight: 40
            color: parts.card.color
            levels: parts.card.cores
            track: Theme.track
        }
        PlainText {
            Layout.alignment: Qt.AlignBottom
            color: Theme.tertiaryText
            font.pixelSize: 12
            text: parts.card.coresNote
        }
    }
    SegmentBar {
        Layout.fillWidth: true
        Layout.preferredHeight: 12
        segments: parts.card.segments
        track: Theme.track
        visible: parts.card.hasSegments
    }
    SegmentLegend {
        Layout.fillWidth: true
        segments: parts.card.segments
        visible: parts.card.hasSegments
    }
}

import QtQuick
import QtQuick.Layouts
import Tavero.Components

// What the colours of a segment bar stand for, in two columns.
GridLayout {
    id: legend

    required property SegmentList segments

    columnSpacing: Theme.spacing
    columns: 2
    rowSpacing: 6

    Repeater {
        model: legend.segments

        RowLayout {
            id: entry

            required property string name
            required property string value
            required property color color

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            spacing: 6

            Rectangle {
                color: entry.color
                implicitHeight: 8
                implicitWidth: 8
                radius: 4
            }
            PlainText {
                color: Theme.secondaryText
                font.pixelSize: 12
                text: entry.name
            }
            PlainText {
                Layout.fillWidth: true
                font.pixelSize: 12
                font.weight: Font.Medium
                horizontalAlignment: Text.AlignRight
                text: entry.value
            }
        }
    }
}

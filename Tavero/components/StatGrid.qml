import QtQuick
import QtQuick.Layouts
import Tavero.Components

// Labels and figures in two columns; a wide one takes both.
GridLayout {
    id: grid

    required property StatList stats

    columnSpacing: Theme.spacing
    columns: 2
    rowSpacing: 6

    Repeater {
        model: grid.stats

        StatRow {
            Layout.columnSpan: isWide ? 2 : 1
            Layout.fillWidth: true
            Layout.preferredWidth: 1 // any width, as long as all have the same
        }
    }
}

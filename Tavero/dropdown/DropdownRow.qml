import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// A metric in a line: its name, the figure, how that is. For a screen reader it is one element.
RowLayout {
    id: row

    required property CardModel card

    Accessible.name: card.spoken
    Accessible.role: Accessible.StaticText
    spacing: Theme.gap

    SymbolIcon {
        color: row.card.color
        implicitHeight: 16
        implicitWidth: 16
        symbol: row.card.symbol
    }
    PlainText {
        Layout.fillWidth: true
        font.weight: Font.Medium
        text: row.card.title
    }
    PlainText {
        Layout.alignment: Qt.AlignBaseline
        font.pixelSize: 15
        font.weight: Font.DemiBold
        text: row.card.value
    }
    PlainText {
        Layout.alignment: Qt.AlignBaseline
        Layout.leftMargin: -4
        color: Theme.secondaryText
        font.pixelSize: 12
        text: row.card.unit
    }
    // As wide for all, so that the figures stand in one column.
    Item {
        Layout.preferredHeight: pill.implicitHeight
        Layout.preferredWidth: 96

        StatusPill {
            id: pill

            anchors.right: parent.right
            color: row.card.statusBackground
            text: row.card.status
            textColor: row.card.statusColor
            width: Math.min(implicitWidth, parent.width)
        }
    }
}

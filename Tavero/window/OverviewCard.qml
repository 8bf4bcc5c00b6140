import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// One metric: the verdict, the figure, what it is made of, and its last minute. For a screen
// reader it is one element.
Rectangle {
    id: root

    required property CardModel card

    Accessible.description: card.spokenDetail
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.name: card.spoken
    Accessible.role: Accessible.Grouping
    activeFocusOnTab: true
    border.color: Theme.cardBorder
    color: Theme.card
    implicitHeight: content.implicitHeight + 2 * Theme.padding
    radius: Theme.radius

    FocusRing {
    }
    ColumnLayout {
        id: content

        anchors.fill: parent
        anchors.margins: Theme.padding
        spacing: 0

        RowLayout {
            Layout.fillHeight: false
            Layout.fillWidth: true
            Layout.preferredHeight: pill.implicitHeight // also while there is no pill
            spacing: Theme.gap

            SymbolIcon {
                color: root.card.color
                implicitHeight: 18
                implicitWidth: 18
                symbol: root.card.symbol
            }
            PlainText {
                Layout.fillWidth: true
                font.pixelSize: 15
                font.weight: Font.DemiBold
                text: root.card.title
            }
            StatusPill {
                id: pill

                color: root.card.statusBackground
                text: root.card.status
                textColor: root.card.statusColor
            }
        }
        // Takes its line even while it says nothing, so that nothing moves when it does; so does the
        // note below.
        PlainText {
            id: verdict

            Layout.fillWidth: true
            Layout.topMargin: 3
            color: Theme.secondaryText
            font.pixelSize: 12
            text: root.card.verdict === "" ? " " : root.card.verdict

            HoverHandler {
                id: verdictHover
            }
            Tooltip {
                isShown: verdictHover.hovered && (verdict.truncated || root.card.wholeVerdict !== root.card.verdict)
                text: root.card.wholeVerdict
            }
        }
        RowLayout {
            Layout.fillHeight: false
            Layout.fillWidth: true
            Layout.topMargin: 6
            spacing: 6

            PlainText {
                Layout.alignment: Qt.AlignBaseline
                font.letterSpacing: -1
                font.pixelSize: 38
                font.weight: Font.DemiBold
                text: root.card.value
            }
            PlainText {
                Layout.alignment: Qt.AlignBaseline
                Layout.fillWidth: true
                color: Theme.secondaryText
                font.pixelSize: 17
                text: root.card.unit
            }
        }
        PlainText {
            Layout.fillWidth: true
            color: Theme.secondaryText
            text: root.card.note === "" ? " " : root.card.note
        }
        CardParts {
            Layout.fillHeight: false
            Layout.fillWidth: true
            Layout.topMargin: 16
            card: root.card
            visible: root.card.cores.length > 0 || root.card.hasSegments
        }
        StatGrid {
            Layout.fillHeight: false
            Layout.fillWidth: true
            Layout.topMargin: 16
            stats: root.card.stats
            visible: root.card.showsDetails
        }
        CardCurves {
            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: 16
            card: root.card
            visible: root.card.showsDetails
        }
        Item {
            Layout.fillHeight: true
            visible: !root.card.showsDetails
        }
    }
}

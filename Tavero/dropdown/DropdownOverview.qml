import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// A line for each metric.
Rectangle {
    id: root

    required property CardList cards
    required property string title

    border.color: Theme.cardBorder
    color: Theme.card
    implicitHeight: content.implicitHeight + 2 * 14
    radius: Theme.radius

    ColumnLayout {
        id: content

        anchors.fill: parent
        anchors.margins: 14
        spacing: 10

        PlainText {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            Layout.bottomMargin: 2
            font.pixelSize: 15
            font.weight: Font.DemiBold
            text: root.title
        }
        Repeater {
            model: root.cards

            DropdownRow {
                Layout.fillWidth: true
            }
        }
    }
}

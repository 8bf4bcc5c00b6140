import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// The apps that use the most, each with a way to quit it.
Rectangle {
    id: root

    required property UsingTheMost model

    border.color: Theme.cardBorder
    color: Theme.card
    implicitHeight: content.implicitHeight + 2 * Theme.padding - 8 // rows have room of their own
    radius: Theme.radius

    ColumnLayout {
        id: content

        anchors.left: parent.left
        anchors.margins: Theme.padding
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: 8

        PlainText {
            Accessible.ignored: !root.visible
            Accessible.name: text
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
            font.pixelSize: 15
            font.weight: Font.DemiBold
            text: root.model.title
        }
        Column {
            Layout.fillWidth: true

            HoverHandler {
                onHoveredChanged: root.model.isHovered = hovered
            }
            Repeater {
                model: root.model.apps

                UsingTheMostRow {
                }
            }

            move: Transition {
                NumberAnimation {
                    duration: Theme.microDuration
                    easing.type: Easing.OutQuad
                    properties: "y"
                }
            }
        }
    }
}

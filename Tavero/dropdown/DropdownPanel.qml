import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Dropdown
import Tavero.Window

// A small window by the menu bar: what its item is about, and the doors to the rest.
Window {
    id: window

    required property DropdownModel model

    readonly property int shadow: model.hasClearCorners ? 14 : 0

    color: model.hasClearCorners ? "transparent" : Theme.window
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.NoDropShadowWindowHint
    height: content.implicitHeight + 2 * (12 + shadow)
    title: "Tavero"
    width: 368 + 2 * shadow // two columns of figures in the card

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]

        onActivated: window.close()
    }
    Repeater {
        model: window.shadow

        Rectangle {
            required property int index

            anchors.fill: parent
            anchors.margins: index
            anchors.topMargin: index + 3
            color: "black"
            opacity: 0.0025 * (index + 1)
            radius: Theme.radius + 18 - index // of the panel, and what lies outside it
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: window.shadow
        border.color: Theme.cardBorder
        color: Theme.window
        radius: window.model.hasClearCorners ? Theme.radius + 4 : 0

        FocusScope {
            anchors.fill: parent
            anchors.margins: 12
            focus: true

            ColumnLayout {
                id: content

                anchors.left: parent.left
                anchors.right: parent.right
                spacing: 12

                PlainText {
                    Layout.fillWidth: true
                    Layout.preferredHeight: 120
                    color: Theme.secondaryText
                    horizontalAlignment: Text.AlignHCenter
                    text: window.model.waitingText
                    verticalAlignment: Text.AlignVCenter
                    visible: window.model.isWaiting
                }
                DropdownOverview {
                    Layout.fillWidth: true
                    cards: window.model.cards
                    title: window.model.title
                    visible: window.model.isOverview && !window.model.isWaiting
                }
                Repeater {
                    model: window.model.isOverview ? null : window.model.cards

                    OverviewCard {
                        Layout.fillWidth: true
                    }
                }
                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    PushButton {
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        focus: true
                        isProminent: true
                        text: "Open Tavero"

                        onClicked: window.model.openMain()
                    }
                    PushButton {
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        text: "Quit Tavero"

                        onClicked: window.model.quit()
                    }
                }
            }
        }
    }
}

import QtQuick
import Tavero.Components

// The ring around what has the keyboard. A child of that item.
Rectangle {
    property bool isShown: parent.activeFocus

    anchors.fill: parent
    anchors.margins: -3
    border.color: Theme.focus
    border.width: 2
    color: "transparent"
    opacity: isShown ? 1 : 0
    radius: Theme.radius + 3
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.microDuration
            easing.type: Easing.OutQuad
        }
    }
}

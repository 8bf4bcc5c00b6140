import QtQuick
import QtQuick.Templates as T
import Tavero.Components

// A slim scroll bar that is there only when there is something to scroll.
T.ScrollBar {
    id: bar

    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    minimumSize: 0.1
    padding: 3
    visible: size < 1

    contentItem: Rectangle {
        color: Theme.tertiaryText
        implicitHeight: 6
        implicitWidth: 6
        opacity: bar.pressed || bar.hovered ? 0.9 : 0.45
        radius: 3
    }
}

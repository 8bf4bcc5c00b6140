import QtQuick
import QtQuick.Templates as T
import Tavero.Components

// The words of a control that has none of its own, above it. A child of that control.
T.ToolTip {
    id: tip

    required property bool isShown

    delay: 600
    horizontalPadding: 10
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    margins: 6
    verticalPadding: 6
    visible: isShown
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: -implicitHeight - 6

    background: Rectangle {
        color: Theme.text
        radius: 6
    }
    contentItem: PlainText {
        color: Theme.window
        font.pixelSize: 12
        text: tip.text
    }
}

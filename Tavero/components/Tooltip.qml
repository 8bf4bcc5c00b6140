import QtQuick
import QtQuick.Templates as T
import Tavero.Components

// More words about what the pointer rests on, above it: those of a control that has none of its own.
// A child of it.
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
    width: Math.min(implicitWidth, 320)
    x: parent ? (parent.width - width) / 2 : 0
    y: -implicitHeight - 6

    background: Rectangle {
        color: Theme.text
        radius: 6
    }
    contentItem: PlainText {
        color: Theme.window
        font.pixelSize: 12
        text: tip.text
        wrapMode: Text.WordWrap
    }
}

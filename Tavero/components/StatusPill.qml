import QtQuick
import Tavero.Components

// A word or two about how something is, in a capsule of its tone.
Rectangle {
    id: pill

    required property string text
    required property color textColor

    implicitHeight: 22
    implicitWidth: label.implicitWidth + 20
    radius: height / 2
    visible: text !== ""

    PlainText {
        id: label

        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        color: pill.textColor
        font.pixelSize: 12
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        text: pill.text
        verticalAlignment: Text.AlignVCenter
    }
}

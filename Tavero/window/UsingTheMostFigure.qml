import QtQuick
import QtQuick.Layouts
import Tavero.Components

// A figure over its bar.
ColumnLayout {
    id: figure

    required property string text
    required property real level
    required property color fill

    spacing: 5

    PlainText {
        Layout.fillWidth: true
        font.pixelSize: 12
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignRight
        text: figure.text
    }
    LevelBar {
        Layout.fillWidth: true
        fill: figure.fill
        level: figure.level
    }
}

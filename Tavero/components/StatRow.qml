import QtQuick
import QtQuick.Layouts
import Tavero.Components

// A label at the left and its figure at the right.
RowLayout {
    id: row

    required property string label
    required property string value
    required property color tint
    required property bool isWide

    spacing: Theme.gap

    PlainText {
        color: Theme.secondaryText
        font.pixelSize: 12
        text: row.label
    }
    PlainText {
        Layout.fillWidth: true
        // The name of an app gives way, not the figure behind it.
        elide: row.isWide ? Text.ElideMiddle : Text.ElideRight
        color: row.tint.valid ? row.tint : Theme.text
        font.pixelSize: 12
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignRight
        text: row.value
    }
}

import QtQuick
import QtQuick.Layouts
import Tavero.Components

// The page's name, and a line about the machine at the right.
RowLayout {
    id: row

    required property string title
    required property string summary

    spacing: Theme.spacing

    PlainText {
        Accessible.name: text
        Accessible.role: Accessible.Heading
        Layout.alignment: Qt.AlignBaseline
        font.pixelSize: 26
        font.weight: Font.Bold
        text: row.title
    }
    PlainText {
        Accessible.ignored: text === ""
        Accessible.name: text
        Accessible.role: Accessible.StaticText
        Layout.alignment: Qt.AlignBaseline
        Layout.fillWidth: true
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignRight
        text: row.summary
    }
}

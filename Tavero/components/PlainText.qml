import QtQuick
import Tavero.Components

// Any text: in the interface's font, never taken for markup, shortened at its end when it is too long.
Text {
    color: Theme.text
    elide: Text.ElideRight
    font.family: Theme.fontFamily
    font.pixelSize: 13
    textFormat: Text.PlainText
}

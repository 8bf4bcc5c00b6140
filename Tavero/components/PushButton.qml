import QtQuick
import QtQuick.Templates as T
import Tavero.Components

// A small button with a word on it.
T.Button {
    id: button

    property bool isProminent: false // the one that does it

    // A key that is held down presses once.
    function press(isAutoRepeat: bool) {
        if (!isAutoRepeat)
            clicked();
    }

    Accessible.name: text
    Accessible.role: Accessible.Button
    focusPolicy: Qt.StrongFocus
    font.family: Theme.fontFamily
    font.pixelSize: 12
    font.weight: Font.Medium
    horizontalPadding: 14
    hoverEnabled: true
    implicitHeight: 28
    implicitWidth: implicitContentWidth + leftPadding + rightPadding

    background: Rectangle {
        border.color: Theme.cardBorder
        border.width: button.isProminent ? 0 : 1
        color: button.isProminent ? Theme.focus : Theme.window
        radius: 7

        Rectangle {
            anchors.fill: parent
            color: Theme.text
            opacity: button.pressed ? 0.16 : button.hovered ? 0.07 : 0
            radius: parent.radius
        }
    }
    contentItem: PlainText {
        color: button.isProminent ? Theme.card : Theme.text
        font: button.font
        horizontalAlignment: Text.AlignHCenter
        text: button.text
        verticalAlignment: Text.AlignVCenter
    }

    Accessible.onPressAction: clicked()
    Keys.onEnterPressed: event => press(event.isAutoRepeat)
    Keys.onReturnPressed: event => press(event.isAutoRepeat)

    FocusRing {
        isShown: button.visualFocus
        radius: 10
    }
}

import QtQuick
import QtQuick.Templates as T
import Tavero.Components

// A round button with a cross, whose words are its tooltip.
T.Button {
    id: button

    component Arm: Rectangle {
        anchors.centerIn: parent
        antialiasing: true
        height: 1.5
        radius: height / 2
        width: 12
    }

    // A key that is held down presses once.
    function press(isAutoRepeat: bool) {
        if (!isAutoRepeat)
            clicked();
    }

    Accessible.name: text
    Accessible.role: Accessible.Button
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: 24
    implicitWidth: 24

    background: Rectangle {
        color: button.pressed ? Theme.cardBorder : Theme.track
        opacity: button.hovered || button.pressed ? 1 : 0
        radius: height / 2
    }
    contentItem: Item {
        Arm {
            color: button.hovered ? Theme.text : Theme.secondaryText
            rotation: 45
        }
        Arm {
            color: button.hovered ? Theme.text : Theme.secondaryText
            rotation: -45
        }
    }

    Accessible.onPressAction: clicked()
    Keys.onEnterPressed: event => press(event.isAutoRepeat)
    Keys.onReturnPressed: event => press(event.isAutoRepeat)

    FocusRing {
        isShown: button.visualFocus
        radius: height / 2
    }
    Tooltip {
        isShown: (button.hovered || button.visualFocus) && button.opacity > 0
        text: button.text
    }
}

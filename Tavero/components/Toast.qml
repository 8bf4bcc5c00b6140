import QtQuick
import Tavero.Components

// A short text in a capsule, for as long as there is one. It takes no clicks. A screen reader is
// told when it comes.
Rectangle {
    id: toast

    required property string text
    property string lastText: "" // stays while the capsule fades
    property bool isShown: false

    // It comes up last: what has no name when it does is not announced.
    function follow() {
        if (text !== "")
            lastText = text;
        Accessible.ignored = text === "";
        isShown = text !== "";
    }

    onTextChanged: follow()
    Component.onCompleted: follow()

    Accessible.name: lastText
    Accessible.role: Accessible.AlertMessage
    color: Theme.text
    implicitHeight: 34
    implicitWidth: label.implicitWidth + 2 * 18
    opacity: isShown ? 1 : 0
    radius: height / 2
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.microDuration
            easing.type: Easing.OutQuad
        }
    }

    PlainText {
        id: label

        anchors.fill: parent
        anchors.leftMargin: 18
        anchors.rightMargin: 18
        color: Theme.window
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        text: toast.lastText
        verticalAlignment: Text.AlignVCenter
    }
}

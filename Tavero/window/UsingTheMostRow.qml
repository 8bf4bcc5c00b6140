import QtQuick
import QtQuick.Layouts
import Tavero.Components
import Tavero.Window

// An app: its figures, or the question whether it shall quit, in the same room.
Item {
    id: row

    required property UsingTheMost owner
    required property int index
    required property int kind
    required property var icon
    required property string name
    required property string flag
    required property string note
    required property string cpu
    required property real cpuLevel
    required property string memory
    required property real memoryLevel
    required property string spoken
    required property bool canQuit
    required property string quitText
    required property bool isConfirming

    readonly property bool isNarrow: width < 520
    readonly property bool isWide: width > 900

    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    implicitHeight: 52
    width: parent ? parent.width : 0

    // The keyboard goes to the question and back, unless it went elsewhere meanwhile.
    onIsConfirmingChanged: {
        if (isConfirming)
            yes.forceActiveFocus(quitButton.focusReason);
        else if (yes.activeFocus || no.activeFocus)
            quitButton.forceActiveFocus(yes.activeFocus ? yes.focusReason : no.focusReason);
    }

    HoverHandler {
        id: hover
    }
    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -10
        anchors.rightMargin: -10
        color: Theme.window
        opacity: hover.hovered || row.isConfirming || quitButton.visualFocus ? 1 : 0
        radius: 8

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.microDuration
                easing.type: Easing.OutQuad
            }
        }
    }
    RowLayout {
        anchors.fill: parent
        spacing: 12

        AppIcon {
            implicitHeight: 32
            implicitWidth: 32
            image: row.icon
            kind: row.kind
            name: row.name
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            Layout.preferredWidth: 1
            spacing: 1

            RowLayout {
                spacing: Theme.gap

                PlainText {
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    font.weight: Font.Medium
                    text: row.name
                }
                StatusPill {
                    color: row.owner.flagBackground
                    implicitHeight: 18
                    text: row.isConfirming ? "" : row.flag
                    textColor: row.owner.flagColor
                }
                Item {
                    Layout.fillWidth: true
                }
            }
            PlainText {
                Layout.fillWidth: true
                color: Theme.secondaryText
                font.pixelSize: 12
                maximumLineCount: 2
                text: row.isConfirming ? row.owner.question : row.note
                visible: text !== ""
                wrapMode: row.isConfirming ? Text.WordWrap : Text.NoWrap
            }
        }
        UsingTheMostFigure {
            Layout.fillWidth: false
            Layout.preferredWidth: row.isNarrow ? 52 : row.isWide ? 180 : 110
            fill: row.owner.cpuColor
            level: row.cpuLevel
            text: row.cpu
            visible: !row.isConfirming
        }
        UsingTheMostFigure {
            Layout.fillWidth: false
            Layout.preferredWidth: row.isNarrow ? 118 : row.isWide ? 180 : 150
            fill: row.owner.memoryColor
            level: row.memoryLevel
            text: row.memory
            visible: !row.isConfirming
        }
        // Its place is kept also where it isn't offered.
        Item {
            implicitHeight: 24
            implicitWidth: 24
            visible: !row.isConfirming

            CrossButton {
                id: quitButton

                opacity: hover.hovered || visualFocus ? 1 : 0
                text: row.quitText
                visible: row.canQuit

                onClicked: row.owner.ask(row.index)
            }
        }
        PushButton {
            id: yes

            Accessible.description: row.owner.question
            isProminent: true
            text: "Quit"
            visible: row.isConfirming

            onClicked: row.owner.quit()
        }
        PushButton {
            id: no

            Layout.leftMargin: -4
            text: "Cancel"
            visible: row.isConfirming

            onClicked: row.owner.cancel()
        }
    }
}

import QtQuick
import Tavero.Components
import Tavero.Window

Window {
    id: window

    required property OverviewModel overview
    required property UsingTheMost usingTheMost
    required property ToastModel toast

    color: Theme.window
    height: Math.min(820, Screen.desktopAvailableHeight)
    minimumHeight: 420
    minimumWidth: 480
    title: "Tavero"
    width: Math.min(1180, Screen.desktopAvailableWidth)

    Shortcut {
        sequence: "Ctrl+W"

        onActivated: window.close()
    }
    Shortcut {
        sequence: "Ctrl+Q"

        onActivated: Qt.quit()
    }
    OverviewPage {
        anchors.fill: parent
        focus: true
        overview: window.overview
        usingTheMost: window.usingTheMost
    }
    Toast {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.spacing
        anchors.horizontalCenter: parent.horizontalCenter
        objectName: "toast"
        text: window.toast.text
        width: Math.min(implicitWidth, parent.width - 2 * Theme.margin)
    }
}

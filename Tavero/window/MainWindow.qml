import QtQuick
import Tavero.Components
import Tavero.Window

Window {
    id: window

    required property OverviewModel overview

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
    }
}

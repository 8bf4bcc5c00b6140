import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tavero.Components
import Tavero.Window

// The title, the cards in as many columns as fit, and the apps that use the most.
FocusScope {
    id: page

    required property OverviewModel overview
    required property UsingTheMost usingTheMost

    readonly property int leastCardWidth: 344 // for two columns of figures
    readonly property int mostWidth: 1600
    readonly property int mostCardHeight: overview.showsDetails ? 440 : 0 // curves may grow
    readonly property int fitting: Math.floor((width - 2 * Theme.margin + Theme.spacing) / (leastCardWidth + Theme.spacing))
    // Four cards stand two and two rather than three and a lonely one.
    readonly property int mostColumns: cards.count === 4 ? 2 : 3
    readonly property int columns: Math.max(1, Math.min(fitting, mostColumns, cards.count))

    readonly property Item focused: Window.activeFocusItem

    onFocusedChanged: if (isInside(focused))
        reveal(focused)

    function isInside(item: Item): bool {
        return item !== null && (item.parent === content || isInside(item.parent));
    }

    // Scrolls as far as it takes to show all of the item, or its top if it is too tall.
    function reveal(item: Item) {
        const top = item.mapToItem(content, 0, 0).y + content.y - Theme.spacing;
        const bottom = top + item.height + 2 * Theme.spacing;
        if (top < flickable.contentY)
            flickable.contentY = Math.max(0, top);
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = Math.min(top, Math.min(bottom, flickable.contentHeight) - flickable.height);
    }

    function scrollBy(distance: real) {
        const lowest = Math.max(0, flickable.contentHeight - flickable.height);
        flickable.contentY = Math.max(0, Math.min(flickable.contentY + distance, lowest));
    }

    Keys.onDownPressed: scrollBy(48)
    Keys.onEscapePressed: event => {
        event.accepted = usingTheMost.isConfirming;
        usingTheMost.cancel();
    }
    Keys.onPressed: event => {
        const page = flickable.height - 48;
        const whole = flickable.contentHeight;
        const distances = new Map([[Qt.Key_PageDown, page], [Qt.Key_PageUp, -page], [Qt.Key_End, whole], [Qt.Key_Home, -whole]]);
        if (!distances.has(event.key))
            return;
        scrollBy(distances.get(event.key));
        event.accepted = true;
    }
    Keys.onUpPressed: scrollBy(-48)

    Flickable {
        id: flickable

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: content.y + content.height + Theme.margin - Theme.spacing
        contentWidth: width

        T.ScrollBar.vertical: ScrollBar {
        }

        ColumnLayout {
            id: content

            height: Math.max(implicitHeight, flickable.height - y - Theme.margin + Theme.spacing)
            spacing: Theme.spacing
            width: Math.min(flickable.width - 2 * Theme.margin, page.mostWidth)
            x: (flickable.width - width) / 2
            y: Theme.margin

            TitleRow {
                Layout.fillHeight: false
                Layout.fillWidth: true
                summary: page.overview.summary
                title: page.overview.title
            }
            PlainText {
                Layout.fillHeight: true
                Layout.fillWidth: true
                color: Theme.secondaryText
                font.pixelSize: 15
                horizontalAlignment: Text.AlignHCenter
                text: page.overview.waitingText
                verticalAlignment: Text.AlignVCenter
                visible: page.overview.isWaiting
            }
            GridLayout {
                id: grid

                Layout.fillHeight: true
                Layout.fillWidth: true
                Layout.maximumHeight: Math.max(implicitHeight, Math.ceil(cards.count / columns) * page.mostCardHeight)
                columnSpacing: Theme.spacing
                columns: page.columns
                rowSpacing: Theme.spacing
                visible: cards.count > 0

                Repeater {
                    id: cards

                    model: page.overview.cards

                    OverviewCard {
                        Layout.fillHeight: true
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1 // any width, as long as all have the same
                    }
                }
            }
            UsingTheMostCard {
                Layout.fillHeight: false
                Layout.fillWidth: true
                model: page.usingTheMost
                visible: page.usingTheMost.hasApps
            }
            // What the cards leave at the bottom.
            Item {
                Layout.fillHeight: true
            }
        }
    }
}

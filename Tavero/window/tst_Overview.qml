import QtQuick
import QtTest
import Tavero.Components
import Tavero.Test
import Tavero.Window

// What only the layout can get wrong.
Item {
    id: root

    height: 820
    width: 1180

    OverviewPage {
        id: page

        anchors.fill: parent
        overview: Bench.overview
        usingTheMost: Bench.usingTheMost
    }
    TestCase {
        name: "Overview"
        when: windowShown

        function all(predicate, item = page, found = []) {
            if (predicate(item))
                found.push(item);
            for (let at = 0; at < item.children.length; ++at)
                all(predicate, item.children[at], found);
            return found;
        }
        function cards() {
            const found = all(item => item.card !== undefined && item.activeFocusOnTab);
            return found.sort((a, b) => a.mapToItem(page, 0, 0).y - b.mapToItem(page, 0, 0).y || a.mapToItem(page, 0, 0).x - b.mapToItem(page, 0, 0).x);
        }
        function texts(item) {
            return all(text => text.textFormat !== undefined && isSeen(text), item).map(text => text.text);
        }
        function isSeen(item) {
            return item === null || (item.visible && isSeen(item.parent));
        }
        function resize(width, height) {
            if (root.width === width && root.height === height)
                return;
            root.width = width;
            root.height = height;
            waitForRendering(page); // with it comes the layout
        }
        function init() {
            Bench.setDetails(true);
            Bench.setOrder("");
            Bench.setUser(0.09);
            if (!Bench.overview.isWaiting)
                Bench.run(5);
            resize(1180, 820);
            tryVerify(() => Bench.overview.isWaiting || cards()[0].card.title === "CPU");
        }

        function test_0_waitsUntilTheFirstSnapshot() {
            compare(texts(page), ["Overview", "Machine · 16 GB", "Reading your Mac…"]);
            Bench.run(0);
            compare(cards().length, 3);
            verify(!texts(page).includes("Reading your Mac…"));
        }
        function test_aCardShowsItsFigures() {
            Bench.setUser(0.93);
            Bench.run(5);
            const shown = texts(cards()[0]);
            for (const text of ["CPU", "96", "%", "Busy", "Load 1.4 of 8", "User", "93%"])
                verify(shown.includes(text), text);
        }
        function test_aCardShowsItsSymbolAndItsVerdict() {
            const card = cards()[0];
            verify(texts(card).includes("Your Mac is mostly idle."));
            const icons = all(item => item.symbol !== undefined && item.width > 0 && isSeen(item), card);
            compare(icons.map(icon => icon.symbol), ["cpu"]);
            compare(icons[0].color, card.card.color);
        }
        function test_theReasonIsATooltip() {
            const verdict = all(item => item.text === "Your Mac is mostly idle." && isSeen(item), cards()[0])[0];
            const reason = "Your Mac is mostly idle. 88% of the CPU is free.";
            const tip = () => all(item => item.text === reason && item.textFormat !== undefined && isSeen(item), root.Window.contentItem.parent || root.Window.contentItem);
            mouseMove(verdict, 5, verdict.height / 2);
            tryVerify(() => tip().length === 1, 3000);
            mouseMove(root, 1, 1);
            tryVerify(() => tip().length === 0);
        }
        function test_withoutDetailsTheFiguresStay() {
            Bench.setDetails(false);
            const shown = texts(cards()[0]);
            verify(shown.includes("12"));
            verify(!shown.includes("User"));
        }
        function test_columnsFollowTheWidth_data() {
            return [
                {tag: "1180", width: 1180, columns: 3},
                {tag: "800", width: 800, columns: 2},
                {tag: "480", width: 480, columns: 1},
                {tag: "1600", width: 1600, columns: 3},
                {tag: "760", width: 760, columns: 2}
            ];
        }
        function test_columnsFollowTheWidth(data) {
            const firstRow = () => cards().filter((card, at, all) => card.y === all[0].y);
            resize(data.width, 820);
            tryVerify(() => firstRow().length === data.columns);
            const row = firstRow();
            const last = row[row.length - 1];
            compare(Math.round(last.mapToItem(page, 0, 0).x + last.width), data.width - Theme.margin);
            for (const card of row) {
                compare(Math.round(card.width), Math.round(row[0].width));
                compare(card.height, row[0].height);
            }
        }
        function test_cardsKeepTheirPlacesWhenDigitsChange() {
            const places = () => cards().map(card => [card.x, card.y, card.width, card.height].join());
            const before = places();
            Bench.setUser(0.97);
            Bench.run(5);
            waitForRendering(page);
            compare(places(), before);
        }
        function test_theOrderOfTheCardsIsTheUsers() {
            Bench.setOrder("network");
            tryVerify(() => cards().map(card => card.card.title).join() === "Network,CPU,Memory");
        }
        function test_tabGoesThroughTheCardsAndShowsARing() {
            root.forceActiveFocus();
            const all = cards();
            for (const card of all) {
                keyClick(Qt.Key_Tab);
                verify(card.activeFocus);
                tryCompare(card.children[0], "opacity", 1);
            }
            keyClick(Qt.Key_Backtab);
            verify(all[1].activeFocus);
            tryCompare(all[2].children[0], "visible", false);
        }
        function test_aCardThatGetsTheKeyboardScrollsIntoView() {
            resize(480, 420);
            root.forceActiveFocus();
            for (const card of cards()) {
                keyClick(Qt.Key_Tab);
                verify(card.activeFocus);
                const y = card.mapToItem(page, 0, 0).y;
                verify(y >= 0 && (y + card.height <= page.height || card.height > page.height - 32), "card at " + y);
            }
        }
        function test_keysScroll() {
            resize(480, 420);
            page.forceActiveFocus();
            const y = () => cards()[0].mapToItem(page, 0, 0).y;
            keyClick(Qt.Key_Home);
            const top = y();
            keyClick(Qt.Key_Down);
            compare(y(), top - 48);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(y(), top);
            keyClick(Qt.Key_End);
            const end = y();
            verify(end < top - 400);
            keyClick(Qt.Key_PageUp);
            verify(y() > end);
            keyClick(Qt.Key_Home);
            compare(y(), top);
        }
        function test_colorsFollowTheAppearance() {
            const card = cards()[0];
            Bench.setDark(true);
            compare(card.color, Theme.card);
            verify(card.color.hslLightness < 0.5);
            Bench.setDark(false);
            verify(card.color.hslLightness > 0.5);
        }
        function test_aScreenReaderHearsTheHeadlineAndTheRest() {
            Bench.run(5);
            const card = cards()[0];
            compare(card.Accessible.name, "CPU, 12 %, Normal, Load 1.4 of 8");
            verify(card.Accessible.description.startsWith("Your Mac is mostly idle. 88% of the CPU is free."));
            verify(card.Accessible.description.includes("User 9%"));
        }
    }
}

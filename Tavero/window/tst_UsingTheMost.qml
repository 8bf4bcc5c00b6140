import QtQuick
import QtTest
import Tavero.Components
import Tavero.Test
import Tavero.Window

// Quitting an app from its row, with the pointer and with the keyboard.
Item {
    id: root

    height: 1400 // all of it, without scrolling
    width: 1180

    OverviewPage {
        id: page

        anchors.fill: parent
        focus: true
        overview: Bench.overview
        usingTheMost: Bench.usingTheMost
    }
    Toast {
        id: toast

        text: Bench.toast.text
    }
    TestCase {
        name: "UsingTheMost"
        when: windowShown

        function all(predicate, item = page, found = []) {
            if (predicate(item))
                found.push(item);
            for (let at = 0; at < item.children.length; ++at)
                all(predicate, item.children[at], found);
            return found;
        }
        function isSeen(item) {
            return item === null || (item.visible && isSeen(item.parent));
        }
        function rows() {
            const found = all(item => item.quitText !== undefined);
            return found.sort((a, b) => a.y - b.y);
        }
        function names() {
            return rows().map(row => row.name);
        }
        function control(row) {
            return all(item => item.text === row.quitText && item.clicked !== undefined, row)[0];
        }
        function button(row, text) {
            return all(item => item.text === text && item.clicked !== undefined && isSeen(item), row)[0];
        }
        function texts(row) {
            return all(text => text.textFormat !== undefined && text.text !== "" && isSeen(text), row).map(text => text.text);
        }
        function hover(item) {
            mouseMove(item, item.width / 2, item.height / 2);
        }
        function areSettled() {
            return rows().every((row, at) => row.y === at * row.height);
        }
        function init() {
            Bench.usingTheMost.cancel();
            mouseMove(root, 1, 1);
            page.forceActiveFocus();
            Bench.setApps(["Editor", "Mail", "Music", "Photos", "Notes"]);
            Bench.run(10); // what was shown of an earlier quit
            tryCompare(Bench.usingTheMost, "isHovered", false);
            tryVerify(() => names().join() === "Editor,Mail,Music,Photos" && areSettled());
        }

        function test_aRowShowsItsFigures() {
            const shown = all(text => text.textFormat !== undefined && text.text !== "" && isSeen(text), rows()[0]);
            compare(shown.map(text => text.text), ["Editor", "80%", "Memory 500 MB"]);
            for (const text of shown)
                verify(!text.truncated && text.width > 0, text.text);
        }
        function test_figuresKeepTheirColumnAndLongNamesGiveWay() {
            const edges = () => rows().map(row => all(item => item.level !== undefined && item.fill !== undefined, row).map(bar => bar.mapToItem(page, 0, 0).x + " " + bar.width).join());
            const before = edges();
            for (const edge of before)
                compare(edge, before[0]); // one below the other
            Bench.setApps(["An app whose name is so long that nobody would ever want to read all of it, not even on a wide screen, let alone in a window", "Mail", "Music", "Photos"]);
            waitForRendering(page);
            compare(edges(), before);
            const cut = all(item => item.truncated !== undefined && item.truncated && isSeen(item), rows()[0]);
            compare(cut.map(text => text.text), [rows()[0].name]);
        }
        function test_theControlComesWithThePointer() {
            const row = rows()[1];
            compare(control(row).opacity, 0);
            hover(row);
            tryVerify(() => control(row).opacity === 1);
            compare(control(row).Accessible.name, "Quit Mail");
            compare(control(rows()[0]).opacity, 0);
            mouseMove(root, 1, 1);
            tryVerify(() => control(row).opacity === 0);
        }
        function test_aToolHasNoControl() {
            Bench.setApps(["Editor"]);
            tryVerify(() => names().join() === "Editor,tool");
            hover(rows()[1]);
            verify(!isSeen(control(rows()[1])));
        }
        function test_itsWordsAreATooltip() {
            hover(control(rows()[1]));
            const tip = () => all(item => item.text === "Quit Mail" && item.textFormat !== undefined && isSeen(item), root.Window.contentItem.parent || root.Window.contentItem);
            tryVerify(() => tip().length === 1, 3000);
            mouseMove(root, 1, 1);
            tryVerify(() => tip().length === 0);
        }
        function test_rowsStayUnderThePointerAndCatchUpAfterwards() {
            const places = () => rows().map(row => row.name + row.y).join();
            hover(rows()[2]);
            tryCompare(Bench.usingTheMost, "isHovered", true);
            const before = places();
            Bench.setApps(["Notes", "Photos", "Music", "Mail", "Editor"]);
            waitForRendering(page);
            compare(places(), before);
            mouseMove(root, 1, 1);
            tryVerify(() => names().join() === "Notes,Photos,Music,Mail");
        }
        function test_itAsksInTheRowAndNothingMoves() {
            const row = rows()[1];
            const height = page.children[0].contentHeight;
            const before = [row.y, row.height, row.parent.height].join();
            mouseClick(control(row));
            compare(texts(row), ["Mail", "If it has unsaved work, it will ask you to save first.", "Quit", "Cancel"]);
            waitForRendering(page);
            compare([row.y, row.height, row.parent.height].join(), before);
            compare(page.children[0].contentHeight, height);
            compare(texts(rows()[0]).length, 3);
        }
        function test_quitAsksTheAppAndTheToastTells() {
            const before = Bench.quits;
            const row = rows()[1];
            mouseClick(control(row));
            compare(Bench.quits, before);
            mouseClick(button(row, "Quit"));
            compare(Bench.quits, before + "/Applications/Mail.app ");
            verify(!Bench.usingTheMost.isConfirming);
            verify(!toast.visible);
            Bench.run(1);
            tryCompare(toast, "opacity", 1);
            compare(toast.Accessible.name, "500 MB freed");
            Bench.run(3);
            tryCompare(toast, "visible", false);
        }
        function test_cancelAsksNobody() {
            const before = Bench.quits;
            const row = rows()[1];
            mouseClick(control(row));
            mouseClick(button(row, "Cancel"));
            verify(!Bench.usingTheMost.isConfirming);
            compare(texts(row), ["Mail", "40%", "Memory 500 MB"]);
            compare(Bench.quits, before);
        }
        function test_escapeCancelsAlsoAfterAClick() {
            const row = rows()[1];
            mouseClick(control(row));
            verify(button(row, "Quit").activeFocus);
            keyClick(Qt.Key_Escape);
            verify(!Bench.usingTheMost.isConfirming);
            mouseClick(control(row));
            page.forceActiveFocus(); // went elsewhere
            keyClick(Qt.Key_Escape);
            verify(!Bench.usingTheMost.isConfirming);
        }
        function test_theKeyboardDoesItAll_data() {
            return [
                {tag: "return", key: Qt.Key_Return},
                {tag: "enter", key: Qt.Key_Enter},
                {tag: "space", key: Qt.Key_Space}
            ];
        }
        function test_theKeyboardDoesItAll(data) {
            const before = Bench.quits;
            const [first, second] = rows();
            let tabs = 0;
            while (!control(first).activeFocus && tabs++ < 10)
                keyClick(Qt.Key_Tab);
            verify(control(first).activeFocus);
            compare(control(first).opacity, 1);
            keyClick(Qt.Key_Tab);
            verify(control(second).activeFocus);
            compare(control(first).opacity, 0);

            keyClick(data.key);
            verify(button(second, "Quit").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(button(second, "Cancel").activeFocus);
            keyClick(data.key);
            verify(!Bench.usingTheMost.isConfirming);
            verify(control(second).activeFocus); // back to where it was

            keyClick(data.key);
            keyClick(Qt.Key_Escape);
            verify(control(second).activeFocus);
            compare(Bench.quits, before);

            keyClick(data.key);
            keyClick(data.key);
            compare(Bench.quits, before + "/Applications/Mail.app ");
        }
        function test_anAssistiveToolCanPressTheButtons() {
            const before = Bench.quits;
            const row = rows()[1];
            control(row).Accessible.pressAction();
            verify(Bench.usingTheMost.isConfirming);
            button(row, "Quit").Accessible.pressAction();
            compare(Bench.quits, before + "/Applications/Mail.app ");
        }
    }
}

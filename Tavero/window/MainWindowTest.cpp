#include "window/MainWindow.h"

#include "components/Fonts.h"
#include "window/test/TestMachine.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

QQuickWindow* shownWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (auto* quick = qobject_cast<QQuickWindow*>(window)) return quick;
    return nullptr;
}

class MainWindowTest : public testing::Test {
  protected:
    TestMachine machine;
    std::optional<MainWindow> main;

    void SetUp() override {
        machine.cpu = TestMachine::quietCpu();
        machine.memory = TestMachine::halfFullMemory();
        machine.start();
        machine.run(0s);
        main.emplace(*machine.monitor, machine.settings, machine.theme);
    }

    std::int64_t windowsSeen() const { return machine.monitor->cadence().visibleWindows(); }
};

TEST_F(MainWindowTest, OpensOnDemandAndTellsTheMonitor) {
    EXPECT_FALSE(main->isOpen());
    EXPECT_EQ(shownWindow(), nullptr);
    main->open();
    EXPECT_TRUE(main->isOpen());
    ASSERT_NE(shownWindow(), nullptr);
    EXPECT_EQ(shownWindow()->title(), "Tavero");
    EXPECT_EQ(windowsSeen(), 1);
    machine.passes.clear();
    machine.run(3s);
    EXPECT_EQ(machine.passes, "FFFF"); // at once, and then every second
}

TEST_F(MainWindowTest, OpeningItTwiceIsOneWindow) {
    main->open();
    QQuickWindow* first = shownWindow();
    main->open();
    EXPECT_EQ(shownWindow(), first);
    EXPECT_EQ(QGuiApplication::topLevelWindows().size(), 1);
    EXPECT_EQ(windowsSeen(), 1);
}

TEST_F(MainWindowTest, ClosedItLeavesNothingThatRuns) {
    main->open();
    const QPointer<QQmlEngine> engine = qmlEngine(shownWindow());
    ASSERT_TRUE(engine);
    machine.run(2s);
    shownWindow()->close();
    EXPECT_EQ(windowsSeen(), 0);
    QCoreApplication::processEvents();
    EXPECT_FALSE(main->isOpen());
    EXPECT_FALSE(engine);
    EXPECT_EQ(shownWindow(), nullptr);

    machine.run(1s); // was asked for before
    machine.passes.clear();
    machine.run(50s);
    EXPECT_EQ(machine.passes, "llllllllll");
    EXPECT_EQ(machine.time.pending(), 1u); // the wait for the next pass
}

TEST_F(MainWindowTest, MinimisedItCountsAsGoneAndRestoredAsBack) {
    main->open();
    shownWindow()->showMinimized();
    EXPECT_EQ(windowsSeen(), 0);
    shownWindow()->showNormal();
    EXPECT_EQ(windowsSeen(), 1);
    shownWindow()->showMinimized();
    main->open(); // brings it back
    EXPECT_EQ(windowsSeen(), 1);
    shownWindow()->showMinimized();
    main->close();
    EXPECT_EQ(windowsSeen(), 0);
}

TEST_F(MainWindowTest, ItOpensAgainAlsoRightAfterItWasClosed) {
    main->open();
    shownWindow()->close();
    main->open();
    QCoreApplication::processEvents(); // what the first closing left to do
    EXPECT_TRUE(main->isOpen());
    ASSERT_NE(shownWindow(), nullptr);
    EXPECT_TRUE(shownWindow()->isVisible());
    EXPECT_EQ(windowsSeen(), 1);
}

TEST_F(MainWindowTest, ItEndsWithItsOwner) {
    main->open();
    main.reset();
    EXPECT_EQ(windowsSeen(), 0);
    EXPECT_EQ(shownWindow(), nullptr);
}

TEST_F(MainWindowTest, CtrlWClosesIt) {
    main->open();
    QKeyEvent press(QEvent::ShortcutOverride, Qt::Key_W, Qt::ControlModifier);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_W, Qt::ControlModifier);
    QCoreApplication::processEvents(); // takes the focus
    QCoreApplication::sendEvent(shownWindow(), &press);
    QCoreApplication::sendEvent(shownWindow(), &key);
    QCoreApplication::processEvents();
    EXPECT_FALSE(main->isOpen());
}

TEST_F(MainWindowTest, ForAScreenReaderACardIsOneElement) {
    main->open();
    QCoreApplication::processEvents();
    QAccessibleInterface* window = QAccessible::queryAccessibleInterface(shownWindow());
    ASSERT_NE(window, nullptr);
    QStringList names;
    for (int at = 0; at < window->childCount(); ++at) {
        QAccessibleInterface* child = window->child(at);
        names += child->text(QAccessible::Name);
        EXPECT_EQ(child->childCount(), 0) << names.last().toStdString();
    }
    EXPECT_EQ(names, (QStringList{"Overview", "CPU, 12 %, Normal, Load 1.4 of 8",
                                  "Memory, 7.6 / 16 GB, Normal"}));
}

TEST_F(MainWindowTest, AToastIsShownForAsLongAsItIsSetAndIsAnAlert) {
    machine.appearance.set({.reducesMotion = true});
    main->open();
    auto* toast = shownWindow()->findChild<QQuickItem*>("toast");
    ASSERT_NE(toast, nullptr);
    EXPECT_FALSE(toast->isVisible());
    for (const char* text : {"700 MB freed", "200 MB freed"}) {
        machine.monitor->show(text);
        EXPECT_TRUE(toast->isVisible());
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(toast);
        ASSERT_NE(spoken, nullptr);
        EXPECT_EQ(spoken->role(), QAccessible::AlertMessage);
        EXPECT_EQ(spoken->text(QAccessible::Name), text);
        machine.run(3s);
        EXPECT_FALSE(toast->isVisible());
    }
}

TEST_F(MainWindowTest, TheDesktopsIconsAreShownAtTheSizeOfTheScreen) {
    struct Icons : AppIcons {
        std::string asked;
        QImage icon(const std::string& path, int pixels) override {
            asked = path + ' ' + std::to_string(pixels);
            return {};
        }
    } icons;
    machine.processes = {TestMachine::app("Editor", 0.5, 100)};
    main.emplace(*machine.monitor, machine.settings, machine.theme, WindowFacts{.icons = &icons});
    main->open();
    machine.run(1s);
    EXPECT_EQ(icons.asked, "/Applications/Editor.app 32");
}

TEST(Font, ItsDigitsHaveOneWidthInEveryWeight) {
    EXPECT_EQ(uiFontFamily(), "Tavero UI");
    for (const int weight : {QFont::Normal, QFont::Medium, QFont::DemiBold, QFont::Bold}) {
        QFont font(uiFontFamily());
        font.setPixelSize(38);
        font.setWeight(static_cast<QFont::Weight>(weight));
        const QFontMetricsF metrics(font);
        for (char digit = '0'; digit <= '9'; ++digit)
            EXPECT_DOUBLE_EQ(metrics.horizontalAdvance(QLatin1Char(digit)),
                             metrics.horizontalAdvance(QLatin1Char('0')));
    }
}

TEST(Font, HasFourWeightsAndTheSignsThatTheInterfaceUses) {
    const QString family = uiFontFamily();
    QList<int> weights;
    for (const QString& style : QFontDatabase::styles(family))
        weights += QFontDatabase::weight(family, style);
    std::sort(weights.begin(), weights.end());
    EXPECT_EQ(weights, (QList<int>{400, 500, 600, 700}));
    const QFontMetricsF metrics{QFont(family)};
    for (const QChar sign : QStringLiteral("–…·°↑↓’“”%/⌥⌘é"))
        EXPECT_TRUE(metrics.inFont(sign)) << QString(sign).toStdString();
}

} // namespace
} // namespace tavero

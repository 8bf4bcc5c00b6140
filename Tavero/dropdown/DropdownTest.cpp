#include "dropdown/Dropdown.h"

#include "window/test/TestMachine.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWindow>

#include <gtest/gtest.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class DropdownTest : public testing::Test {
  protected:
    TestMachine machine;
    std::optional<Dropdown> dropdown;
    std::optional<Section> opened;
    int quits = 0;

    void SetUp() override {
        machine.cpu = TestMachine::quietCpu();
        machine.memory = TestMachine::halfFullMemory();
        machine.start();
        machine.run(0s);
        dropdown.emplace(*machine.monitor, machine.settings, machine.theme,
                         DropdownEvents{.openMain = [this](Section section) { opened = section; },
                                        .quit = [this] { ++quits; }});
    }

    static QQuickWindow* panel() {
        for (QWindow* window : QGuiApplication::topLevelWindows())
            if (auto* quick = qobject_cast<QQuickWindow*>(window)) return quick;
        return nullptr;
    }

    static QQuickItem* find(QQuickItem* item, const QString& text) {
        if (item->isVisible() && item->property("text").toString() == text) return item;
        for (QQuickItem* child : item->childItems())
            if (QQuickItem* found = find(child, text)) return found;
        return nullptr;
    }
    static bool shows(const QString& text) { return find(panel()->contentItem(), text); }

    static void settle() {
        for (int round = 0; round < 5; ++round) QCoreApplication::processEvents();
    }

    static void press(int key) {
        settle(); // takes the focus
        for (const QEvent::Type type :
             {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            if (!panel()) return;
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(panel(), &event);
        }
        settle();
    }

    std::int64_t viewsSeen() const { return machine.monitor->cadence().visibleViews(); }
};

TEST_F(DropdownTest, OpensOnDemandAndTellsTheMonitor) {
    EXPECT_EQ(panel(), nullptr);
    dropdown->open(Section::cpu, {400, 12});
    ASSERT_NE(panel(), nullptr);
    EXPECT_TRUE(panel()->isVisible());
    EXPECT_EQ(viewsSeen(), 1);
    EXPECT_EQ(machine.monitor->cadence().visibleWindows(), 0);
    machine.passes.clear();
    machine.run(3s);
    EXPECT_EQ(machine.passes.size(), 4u); // at once, and then every second
}

TEST_F(DropdownTest, OnAMetricItShowsTheCardOfIt) {
    dropdown->open(Section::cpu, {400, 12});
    for (const char* text : {"CPU", "12", "%", "Normal", "User", "Open Tavero", "Quit Tavero"})
        EXPECT_TRUE(shows(text)) << text;
    EXPECT_FALSE(shows("Memory"));
    EXPECT_FALSE(shows("Reading your Mac…"));
}

TEST_F(DropdownTest, OnTheOverviewItShowsALineOfEach) {
    dropdown->open(Section::overview, {400, 12});
    for (const char* text : {"Overview", "CPU", "12", "%", "Memory", "7.6"})
        EXPECT_TRUE(shows(text)) << text;
    EXPECT_FALSE(shows("User"));
}

TEST_F(DropdownTest, ItStandsBelowTheClickAndInsideTheScreen) {
    dropdown->open(Section::cpu, {400, 12});
    EXPECT_EQ(panel()->x() + panel()->width() / 2, 400);
    EXPECT_GE(panel()->y(), 12);
    const int cpuHeight = panel()->height();
    EXPECT_GT(cpuHeight, 200);
    dropdown->open(Section::overview, {});
    EXPECT_LT(panel()->height(), cpuHeight);
    EXPECT_EQ(panel()->geometry().right() + 1 + 6 - panel()->property("shadow").toInt(),
              QGuiApplication::primaryScreen()->availableGeometry().right() + 1);
}

TEST_F(DropdownTest, AnotherClickOnTheSameItemClosesIt) {
    dropdown->open(Section::cpu, {400, 12});
    dropdown->open(Section::cpu, {400, 12});
    EXPECT_FALSE(dropdown->isOpen());
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(viewsSeen(), 0);
}

TEST_F(DropdownTest, AnotherItemMovesIt) {
    dropdown->open(Section::cpu, {400, 12});
    dropdown->open(Section::memory, {450, 12});
    EXPECT_TRUE(shows("Memory"));
    EXPECT_EQ(QGuiApplication::topLevelWindows().size(), 1);
    EXPECT_EQ(viewsSeen(), 1);
}

TEST_F(DropdownTest, EscapeClosesItAndNothingOfItIsLeft) {
    dropdown->open(Section::cpu, {400, 12});
    const QPointer<QQmlEngine> engine = qmlEngine(panel());
    ASSERT_TRUE(engine);
    press(Qt::Key_Escape);
    EXPECT_FALSE(dropdown->isOpen());
    EXPECT_FALSE(engine);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(viewsSeen(), 0);
    machine.run(1s); // was asked for before
    EXPECT_EQ(machine.time.pending(), 1u);
}

TEST_F(DropdownTest, ItClosesWhenItLosesTheKeyboard) {
    dropdown->open(Section::cpu, {400, 12});
    settle();
    ASSERT_TRUE(panel()->isActive());
    QWindow other;
    other.show();
    other.requestActivate();
    settle();
    EXPECT_FALSE(dropdown->isOpen());
    EXPECT_EQ(viewsSeen(), 0);
}

TEST_F(DropdownTest, TheFirstButtonHasTheKeyboardAndOpensThePageOfTheSection) {
    dropdown->open(Section::memory, {400, 12});
    press(Qt::Key_Return);
    EXPECT_EQ(opened, Section::memory);
    EXPECT_FALSE(dropdown->isOpen());
    EXPECT_EQ(quits, 0);
}

TEST_F(DropdownTest, TheOtherButtonQuits) {
    dropdown->open(Section::overview, {400, 12});
    settle();
    QMetaObject::invokeMethod(find(panel()->contentItem(), "Quit Tavero"), "clicked");
    settle();
    EXPECT_EQ(quits, 1);
    EXPECT_EQ(opened, std::nullopt);
    EXPECT_FALSE(dropdown->isOpen());
}

TEST_F(DropdownTest, BeforeTheFirstPassItWaitsAndThenGrows) {
    TestMachine young;
    young.cpu = TestMachine::quietCpu();
    young.start();
    Dropdown early(*young.monitor, young.settings, young.theme);
    early.open(Section::cpu, {400, 12});
    EXPECT_TRUE(shows("Reading your Mac…"));
    const int height = panel()->height();
    young.run(0s);
    settle();
    EXPECT_FALSE(shows("Reading your Mac…"));
    EXPECT_TRUE(shows("12"));
    EXPECT_GT(panel()->height(), height);
}

TEST_F(DropdownTest, ItEndsWithItsOwner) {
    dropdown->open(Section::cpu, {400, 12});
    dropdown.reset();
    EXPECT_EQ(viewsSeen(), 0);
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(DropdownTest, ForAScreenReaderALineIsOneElement) {
    dropdown->open(Section::overview, {400, 12});
    settle();
    QAccessibleInterface* window = QAccessible::queryAccessibleInterface(panel());
    ASSERT_NE(window, nullptr);
    QStringList names;
    for (int at = 0; at < window->childCount(); ++at)
        names += window->child(at)->text(QAccessible::Name);
    EXPECT_EQ(names, (QStringList{"Overview", "CPU, 12 %, Normal, Load 1.4 of 8",
                                  "Memory, 7.6 / 16 GB, Normal", "Open Tavero", "Quit Tavero"}));
}

} // namespace
} // namespace tavero

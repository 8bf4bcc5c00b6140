#include "menubar/MenuBar.h"

#include "desktop/sim/SimStatusItems.h"
#include "menubar/ExtraMenuBarItem.h"
#include "menubar/MenuBarRenderer.h"
#include "platform/sim/SimMachine.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

using Names = std::vector<std::string>;

constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;

// A menu bar over a machine of plain values, in virtual time.
class MenuBarTest : public testing::Test {
  protected:
    // What the machine says now.
    CPUSnapshot cpu{.user = 0.25, .system = 0.25};
    MemorySnapshot memory{
        .total = 16 * gibibyte, .app = 8 * gibibyte, .pressure = MemoryPressure::normal};
    SoundSnapshot sound{.volume = 0.5};

    QTemporaryDir directory;
    Settings settings{directory.filePath("Tavero.conf")};
    VirtualTime time;
    std::optional<Monitor> monitor;
    SimStatusItems bar;
    std::vector<std::pair<ItemKind, Section>> opened;
    std::optional<MenuBar> menuBar;

    void SetUp() override {
        Readers readers;
        readers.cpu = [this] { return cpu; };
        readers.memory = [this] { return memory; };
        readers.sound = [this] { return sound; };
        monitor.emplace(std::move(readers), nullptr, time.worker(), time, settings);
        menuBar.emplace(*monitor, settings, bar,
                        MenuBarActions{.open = [this](ItemKind kind, Section section, QPoint) {
                            opened.emplace_back(kind, section);
                        }});
        menuBar->show();
    }

    void start() {
        monitor->start();
        time.advance(0s);
    }

    Names names() const {
        Names ids;
        for (const SimStatusItems::Item& item : bar.items) ids.push_back(item.id);
        return ids;
    }

    const SimStatusItems::Item& item(const std::string& id) {
        const SimStatusItems::Item* found = bar.find(id);
        if (!found) throw std::runtime_error("no item " + id);
        return *found;
    }

    std::string text(const std::string& id) { return item(id).picture.text; }
    void showEverything() {
        for (const Metric metric : allMetrics) settings.set(keys::menuBarItem(metric), true);
        settings.set(keys::menuBarBluetooth, true);
    }
};

TEST_F(MenuBarTest, TheItemsOfTheDefaultsEnterInTheirOrder) {
    EXPECT_EQ(names(), (Names{"tavero", "sound", "temperature", "network", "memory", "cpu"}));
}

TEST_F(MenuBarTest, AllItemsEnterInTheirOrder) {
    menuBar.reset();
    EXPECT_TRUE(bar.items.empty()) << "the items leave with the menu bar";
    showEverything();
    menuBar.emplace(*monitor, settings, bar, MenuBarActions{});
    EXPECT_TRUE(bar.items.empty()) << "nothing shows before it is told to";
    menuBar->show();
    EXPECT_EQ(names(), (Names{"tavero", "sound", "bluetooth", "power", "disk", "gpu", "temperature",
                              "network", "memory", "cpu"}));
}

TEST_F(MenuBarTest, CompactStyleLeavesTheMainItemAndSound) {
    showEverything();
    settings.set<std::string>(keys::menuBarStyle, "compact");
    EXPECT_EQ(names(), (Names{"tavero", "sound"}));
    settings.set(keys::menuBarSound, false);
    EXPECT_EQ(names(), Names{"tavero"});
    EXPECT_TRUE(settings.get(keys::menuBarBluetooth)) << "only the user changes the settings";
    settings.set<std::string>(keys::menuBarStyle, "detailed");
    EXPECT_EQ(bar.items.size(), 9u);
}

TEST_F(MenuBarTest, AnItemThatTheUserRemovedIsSwitchedOffInTheSettings) {
    const auto removed = item("memory").events.removed;
    removed();
    EXPECT_FALSE(settings.get(keys::menuBarItem(Metric::memory)));
    EXPECT_FALSE(bar.find("memory"));
    settings.set(keys::menuBarItem(Metric::memory), true);
    EXPECT_TRUE(bar.find("memory"));
}

TEST_F(MenuBarTest, TheMainItemCannotBeRemoved) {
    EXPECT_FALSE(item("tavero").events.removed);
    EXPECT_TRUE(item("sound").events.removed);
}

TEST_F(MenuBarTest, WithNoSampleYetAMetricReadsItsTitle) {
    EXPECT_EQ(text("memory"), "Memory");
    EXPECT_EQ(text("tavero"), "Tavero");
    start();
    EXPECT_EQ(text("memory"), "Memory 8.0 GB");
    EXPECT_EQ(text("cpu"), "CPU 50%");
    EXPECT_EQ(text("temperature"), "Temperature –");
}

TEST_F(MenuBarTest, ItKeepsTheSlowPaceOfTheMenuBarWhileASurfaceIsOpen) {
    start();
    monitor->viewAppeared(ViewKind::window);
    time.advance(0s);
    const int before = item("cpu").changes;
    for (int second = 1; second <= 20; ++second) {
        cpu.user = 0.02 * second;
        time.advance(1s);
    }
    EXPECT_EQ(item("cpu").changes - before, 4);
}

TEST_F(MenuBarTest, APictureThatStaysTheSameIsNotDrawnAgain) {
    start();
    settings.set<std::string>(keys::menuBarMode(Metric::cpu), "value");
    const int cpuBefore = item("cpu").changes;
    const int memoryBefore = item("memory").changes;
    memory.app = 9 * gibibyte;
    time.advance(60s);
    EXPECT_EQ(item("cpu").changes, cpuBefore);
    EXPECT_EQ(item("memory").changes, memoryBefore + 1);
}

TEST_F(MenuBarTest, UnderStrainTheMetricsItemWarnsInDetailedStyleAndTheMainItemInCompact) {
    memory.pressure = MemoryPressure::critical;
    start();
    EXPECT_EQ(text("memory"), "Under strain: 50%");
    EXPECT_FALSE(item("memory").picture.isTemplate);
    EXPECT_TRUE(item("cpu").picture.isTemplate);
    EXPECT_EQ(text("tavero"), "Tavero");
    EXPECT_TRUE(item("tavero").picture.isTemplate);

    settings.set<std::string>(keys::menuBarStyle, "compact");
    EXPECT_EQ(text("tavero"), "Under strain: Memory 50%");
    EXPECT_FALSE(item("tavero").picture.isTemplate);
    settings.set(keys::warnUnderStrain, false);
    EXPECT_EQ(text("tavero"), "Tavero");
}

TEST_F(MenuBarTest, StrainThatEndsGivesTheFiguresBack) {
    memory.pressure = MemoryPressure::warning;
    start();
    memory.pressure = MemoryPressure::normal;
    time.advance(5s);
    EXPECT_EQ(text("memory"), "Memory 8.0 GB");
}

TEST_F(MenuBarTest, TheDotTellsOfAnUpdate) {
    const QImage plain = item("tavero").picture.wide;
    menuBar->setUpdateReady(true);
    EXPECT_EQ(text("tavero"), "Tavero, update ready");
    EXPECT_NE(item("tavero").picture.wide, plain);
}

TEST_F(MenuBarTest, EveryItemOpensItsPanelAndTemperatureThatOfTheCPU) {
    showEverything();
    for (const SimStatusItems::Item& item : bar.items) item.events.open({});
    using Opened = std::pair<ItemKind, Section>;
    const std::set<Opened> all(opened.begin(), opened.end());
    EXPECT_EQ(opened.size(), 10u);
    EXPECT_EQ(all, (std::set<Opened>{{ItemKind::main, Section::overview},
                                     {ItemKind::sound, Section::sound},
                                     {ItemKind::bluetooth, Section::bluetooth},
                                     {ItemKind::metric, Section::cpu},
                                     {ItemKind::metric, Section::memory},
                                     {ItemKind::metric, Section::gpu},
                                     {ItemKind::metric, Section::power},
                                     {ItemKind::metric, Section::disk},
                                     {ItemKind::metric, Section::network}}));
    opened.clear();
    item("temperature").events.open({});
    EXPECT_EQ(opened, std::vector<Opened>({{ItemKind::metric, Section::cpu}}));
}

TEST_F(MenuBarTest, TheSmallMenuTellsTheValueAndLeadsToTavero) {
    int windows = 0;
    int quits = 0;
    menuBar.emplace(*monitor, settings, bar,
                    MenuBarActions{.openWindow = [&] { ++windows; }, .quit = [&] { ++quits; }});
    menuBar->show();
    start();
    const std::vector<StatusMenuEntry> menu = item("cpu").events.menu();
    ASSERT_EQ(menu.size(), 4u);
    EXPECT_EQ(menu[0].title, "CPU 50%");
    EXPECT_FALSE(menu[0].choose);
    EXPECT_EQ(menu[1].title, "");
    EXPECT_EQ(menu[2].title, "Open Tavero");
    EXPECT_EQ(menu[3].title, "Quit Tavero");
    menu[2].choose();
    menu[3].choose();
    EXPECT_EQ(windows, 1);
    EXPECT_EQ(quits, 1);
    EXPECT_EQ(item("sound").events.menu()[0].title, "Sound 50%");
    EXPECT_EQ(item("tavero").events.menu()[0].title, "Tavero");
}

TEST_F(MenuBarTest, TheSoundItemFollowsTheVolumeAtOnce) {
    start();
    const QImage half = item("sound").picture.wide;
    EXPECT_EQ(text("sound"), "Sound");
    monitor->setVolume(0);
    EXPECT_NE(item("sound").picture.wide, half);
    const int before = item("sound").changes;
    monitor->setVolume(0.001);
    monitor->setVolume(0.002);
    EXPECT_EQ(item("sound").changes, before + 1);
}

TEST_F(MenuBarTest, TheBluetoothItemShowsTheLowestBattery) {
    settings.set(keys::menuBarBluetooth, true);
    EXPECT_EQ(text("bluetooth"), "Bluetooth, nothing connected");
    menuBar->setBluetooth({{"Mouse", "computermouse", 80}, {"Earbuds", "airpods", 40}});
    EXPECT_EQ(text("bluetooth"), "Earbuds battery 40 percent");
    menuBar->setBluetooth({});
    EXPECT_EQ(text("bluetooth"), "Bluetooth, nothing connected");
}

TEST_F(MenuBarTest, ASettingOfTheLookShowsAtOnce) {
    start();
    const QImage before = item("cpu").picture.wide;
    settings.set(keys::menuBarLabels, false);
    const QImage nameless = item("cpu").picture.wide;
    EXPECT_NE(nameless, before);
    settings.set<std::string>(keys::menuBarMode(Metric::cpu), "graph");
    EXPECT_LT(item("cpu").picture.wide.width(), nameless.width());
    const int changes = item("cpu").changes;
    settings.set<std::string>(keys::lastSection, "memory");
    EXPECT_EQ(item("cpu").changes, changes);
}

TEST_F(MenuBarTest, APictureIsOfBothShapesAtTwicePerPoint) {
    for (const SimStatusItems::Item& item : bar.items) {
        EXPECT_EQ(item.picture.wide.devicePixelRatio(), 2);
        EXPECT_EQ(item.picture.square.size(), QSize(44, 44));
        EXPECT_FALSE(item.picture.text.empty());
    }
}

TEST(MenuBarOnTheSimulatedMac, AnHourGoesByAndEveryItemStaysAsWideAsItsDigits) {
    const QTemporaryDir directory;
    Settings settings(directory.filePath("Tavero.conf"));
    VirtualTime time;
    SimMachine machine(memoryPressure(), [&] { return time.now(); });
    Monitor monitor(machine.machine(), time.worker(), time, settings);
    SimStatusItems bar;
    MenuBar menuBar(monitor, settings, bar, {});
    menuBar.show();
    monitor.start();
    std::set<std::string> warnings;
    std::set<int> widthsOfCPU;
    for (int step = 0; step < 720; ++step) {
        time.advance(5s);
        for (const SimStatusItems::Item& item : bar.items)
            if (!item.picture.isTemplate) warnings.insert(item.id);
        if (const StatusPicture& cpu = bar.find("cpu")->picture; cpu.isTemplate)
            widthsOfCPU.insert(cpu.wide.width());
    }
    EXPECT_TRUE(warnings.contains("memory"));
    EXPECT_FALSE(warnings.contains("tavero"));
    EXPECT_LE(widthsOfCPU.size(), 3u); // of one, two and three digits
    EXPECT_GT(bar.find("cpu")->changes, 100);
}

} // namespace
} // namespace tavero

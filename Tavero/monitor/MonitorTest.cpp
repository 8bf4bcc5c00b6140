#include "monitor/Monitor.h"

#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

struct FakePower final : PowerSource {
    bool external = true;
    ThermalState thermal = ThermalState::nominal;

    bool lowPowerMode() override { return false; }
    bool onExternalPower() override { return external; }
    ThermalState thermalState() override { return thermal; }
};

// A monitor over a machine of plain values, in virtual time.
class MonitorTest : public testing::Test {
  protected:
    // What the machine says now.
    CPUSnapshot cpu{.user = 0.25, .system = 0.25};
    std::vector<ProcessSample> processes{{.pid = 1,
                                          .name = "editor",
                                          .path = "/opt/editor/bin/editor",
                                          .cpu = 0.5,
                                          .memory = 100,
                                          .hasUsage = true,
                                          .app = {AppIdentity::Kind::tool, "editor"}}};
    std::optional<BatterySnapshot> battery;
    std::optional<SoundSnapshot> sound;
    std::optional<SystemActivity> activity;

    // What was asked of it: a letter a pass ("F" full, "l" light), and when.
    std::string passes;
    std::vector<Date> dates;
    std::vector<bool> threads;

    QTemporaryDir directory;
    Settings settings{directory.filePath("Tavero.conf")};
    VirtualTime time;
    Date start = time.now();
    FakePower* power = nullptr;
    MonitorServices services;
    std::unique_ptr<Monitor> monitor;

    Readers machine() {
        Readers readers;
        readers.cpu = [this] {
            if (passes.size() == dates.size()) passes += 'l';
            dates.push_back(time.now());
            return cpu;
        };
        readers.processes = [this](bool withThreads) -> std::span<const ProcessSample> {
            passes += 'F';
            threads.push_back(withThreads);
            return processes;
        };
        readers.battery = [this] { return battery; };
        readers.unusualActivity = [this](std::span<const ProcessSample>) { return activity; };
        return readers;
    }

    Monitor& make(std::chrono::nanoseconds passTime = {}) {
        auto source = std::make_unique<FakePower>();
        power = source.get();
        Readers readers = machine();
        if (sound) readers.sound = [this] { return *sound; };
        monitor = std::make_unique<Monitor>(std::move(readers), std::move(source),
                                            time.worker(passTime), time, settings, services);
        return *monitor;
    }

    std::vector<double> secondsOfPasses() const {
        std::vector<double> seconds;
        for (const Date date : dates) seconds.push_back(secondsBetween(start, date));
        return seconds;
    }
};

TEST_F(MonitorTest, WithNothingOpenItLooksEveryFiveSecondsAndDeeplyOnceAMinute) {
    make().start();
    time.advance(120s);
    EXPECT_EQ(passes, "FlllllllllllFlllllllllllF");
    EXPECT_EQ(dates[1] - dates[0], 5s);
    EXPECT_EQ(dates.back() - dates.front(), 120s);
}

TEST_F(MonitorTest, StartingTwiceStartsOneLoop) {
    make().start();
    monitor->start();
    time.advance(10s);
    EXPECT_EQ(passes, "Fll");
}

TEST_F(MonitorTest, AWindowIsServedEverySecondWithThreads) {
    make().start();
    time.advance(0s);
    monitor->viewAppeared(ViewKind::window);
    time.advance(3s);
    EXPECT_EQ(passes, "FFFFF");
    EXPECT_EQ(threads, (std::vector<bool>{false, true, true, true, true}));
}

TEST_F(MonitorTest, OpeningTheFirstSurfaceCutsTheWaitShortAndASecondDoesNot) {
    make().start();
    time.advance(2s);
    monitor->viewAppeared(ViewKind::compact);
    time.advance(0s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 2}));
    EXPECT_EQ(passes, "FF");
    time.advance(500ms);
    monitor->viewAppeared(ViewKind::window);
    time.advance(499ms);
    EXPECT_EQ(dates.size(), 2u);
    time.advance(1ms);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 2, 3}));
}

TEST_F(MonitorTest, ClosingTheWindowDropsTheLoopToLightPassesEveryFiveSeconds) {
    make().start();
    monitor->viewAppeared(ViewKind::window);
    time.advance(10s);
    passes.clear();
    dates.clear();
    monitor->viewDisappeared(ViewKind::window);
    // The wait under way ends as it was; the ones after it are long.
    time.advance(60s);
    EXPECT_EQ(secondsOfPasses(),
              (std::vector<double>{11, 16, 21, 26, 31, 36, 41, 46, 51, 56, 61, 66}));
    EXPECT_EQ(passes, "lllllllllllF"); // the pass before the window counted as the first closed one
}

TEST_F(MonitorTest, TheRefreshSettingAndTheBatterySetThePaceOfAnOpenSurface) {
    make().start();
    monitor->viewAppeared(ViewKind::compact);
    settings.set(keys::refreshSeconds, std::int64_t{3});
    time.advance(6s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 3, 6}));
    power->external = false;
    time.advance(3s); // was asked for before
    dates.clear();
    time.advance(12s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{15, 21}));
    settings.set(keys::slowOnBattery, false);
    time.advance(6s);
    dates.clear();
    time.advance(6s);
    EXPECT_EQ(dates.size(), 2u);
}

TEST_F(MonitorTest, OnBatteryTheClosedPaceStaysFiveSeconds) {
    make().start();
    power->external = false;
    time.advance(20s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 5, 10, 15, 20}));
}

TEST_F(MonitorTest, PassesNeverOverlapAndTheWaitBeginsWhenOneIsPublished) {
    make(3s).start();
    monitor->viewAppeared(ViewKind::compact);
    time.advance(12s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{3, 7, 11})); // 3 s of pass, 1 s of wait
}

TEST_F(MonitorTest, ASurfaceThatOpensDuringAPassGetsItsOwnPassAfterAnOpenWait) {
    make(2s).start();
    time.advance(1s);
    monitor->viewAppeared(ViewKind::compact);
    time.advance(4s);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{2, 5}));
}

TEST_F(MonitorTest, ADestroyedMonitorLeavesNothingBehind) {
    make(1s).start();
    time.advance(500ms);
    monitor.reset();
    time.advance(1h);
    EXPECT_EQ(time.pending(), 0u);
}

TEST_F(MonitorTest, ALightPassKeepsTheAppsOfTheLastFullOne) {
    battery = BatterySnapshot{.percent = 80};
    make().start();
    time.advance(0s);
    ASSERT_TRUE(monitor->snapshot());
    EXPECT_EQ(monitor->snapshot()->appCount, 1);
    EXPECT_EQ(monitor->snapshot()->memoryHeavyApps.size(), 1u);
    time.advance(5s);
    const LiveSnapshot& light = *monitor->snapshot();
    ASSERT_EQ(light.apps.size(), 1u);
    EXPECT_EQ(light.apps.front().name, "editor");
    EXPECT_EQ(light.processCount, 1);
    EXPECT_EQ(light.battery->percent, 80);
    EXPECT_EQ(light.appCount, 0);
    EXPECT_TRUE(light.memoryHeavyApps.empty());
    EXPECT_TRUE(light.networkApps.empty());
}

TEST_F(MonitorTest, TheMenuBarChangesAtOnceAndThenAtMostEveryFiveSeconds) {
    make().start();
    int menuBarChanges = 0;
    QObject::connect(monitor.get(), &Monitor::menuBarChanged, [&] { ++menuBarChanges; });
    monitor->viewAppeared(ViewKind::compact);
    time.advance(0s);
    EXPECT_EQ(menuBarChanges, 1);
    EXPECT_EQ(monitor->menuBarSnapshot()->date, start);
    time.advance(4s);
    EXPECT_EQ(menuBarChanges, 1);
    EXPECT_EQ(monitor->snapshot()->date, start + 4s);
    time.advance(1s);
    EXPECT_EQ(menuBarChanges, 2);
    EXPECT_EQ(monitor->menuBarSnapshot()->date, start + 5s);
}

TEST_F(MonitorTest, AClockThatWasSetBackUpdatesTheMenuBar) {
    make().start();
    monitor->viewAppeared(ViewKind::compact);
    time.advance(0s);
    time.setWallClock(start - 24h);
    time.advance(1s);
    EXPECT_EQ(monitor->menuBarSnapshot()->date, start - 24h + 1s);
}

TEST_F(MonitorTest, APreviewFeedsTheGraphsButRecordsNothingAndStartsNoService) {
    std::string log;
    services.recordHistory = [&](const LiveSnapshot&, std::optional<double>) { log += 'h'; };
    services.checkAlerts = [&](const LiveSnapshot&) { log += 'a'; };
    services.startAudio = [&] { log += 'S'; };
    services.requestNotificationAuthorization = [&] { log += 'N'; };
    services.refreshBluetooth = [&] { log += 'B'; };
    make().startPreview();
    monitor->startPreview();
    time.advance(5s);
    EXPECT_EQ(log, "");
    EXPECT_EQ(monitor->graphs().rawHistory().at(Metric::cpu).size(), 2u);

    monitor->start();
    EXPECT_EQ(log, "SNB");
    EXPECT_FALSE(monitor->isPreview());
    time.advance(5s);
    EXPECT_EQ(log, "SNBha");
    EXPECT_EQ(dates.size(), 3u); // the same loop went on
    monitor->startPreview();
    EXPECT_FALSE(monitor->isPreview());
}

TEST_F(MonitorTest, HistoryAndAlertsSeeTheRawSnapshot) {
    std::vector<std::size_t> apps;
    services.recordHistory = [&](const LiveSnapshot& raw, std::optional<double>) {
        apps.push_back(raw.apps.size());
    };
    services.checkAlerts = [&](const LiveSnapshot& raw) { apps.push_back(raw.apps.size()); };
    make().start();
    time.advance(5s);
    EXPECT_EQ(apps, (std::vector<std::size_t>{1, 1, 0, 0}));
}

TEST_F(MonitorTest, AppTimeIsTheSpanBetweenFullPassesCappedAndNeverNegative) {
    std::vector<std::optional<double>> appSeconds;
    services.recordHistory = [&](const LiveSnapshot&, std::optional<double> seconds) {
        appSeconds.push_back(seconds);
    };
    make().start();
    time.advance(60s);
    ASSERT_EQ(appSeconds.size(), 13u);
    EXPECT_EQ(appSeconds[0], std::nullopt);
    EXPECT_EQ(appSeconds[1], std::nullopt); // a light pass has no apps
    EXPECT_EQ(appSeconds[12], 60);

    time.setWallClock(time.now() + 1h);
    time.advance(60s);
    EXPECT_EQ(appSeconds.back(), 120);
    time.setWallClock(time.now() - 2h);
    time.advance(60s);
    EXPECT_EQ(appSeconds.back(), 0);
}

TEST_F(MonitorTest, HistoryIsNotKeptWhenTheUserSaysSo) {
    int records = 0;
    services.recordHistory = [&](const LiveSnapshot&, std::optional<double>) { ++records; };
    settings.set(keys::keepHistory, false);
    make().start();
    time.advance(60s);
    EXPECT_EQ(records, 0);
    settings.set(keys::keepHistory, true);
    time.advance(5s);
    EXPECT_EQ(records, 1);
}

TEST_F(MonitorTest, BluetoothIsRefreshedEveryMinuteWhileItsItemIsShownAndElseEveryTen) {
    int refreshes = 0;
    services.refreshBluetooth = [&] { ++refreshes; };
    make().start();
    EXPECT_EQ(refreshes, 1);
    time.advance(599s);
    EXPECT_EQ(refreshes, 1);
    settings.set(keys::menuBarBluetooth, true);
    time.advance(1s);
    EXPECT_EQ(refreshes, 2);
    time.advance(60s);
    EXPECT_EQ(refreshes, 3);
}

TEST_F(MonitorTest, WithABatteryThePowerGraphShowsItsCharge) {
    battery = BatterySnapshot{.percent = 40, .watts = -9.0};
    make().start();
    time.advance(0s);
    ASSERT_EQ(monitor->graphs().rawHistory().at(Metric::power).size(), 1u);
    EXPECT_DOUBLE_EQ(monitor->graphs().rawHistory().at(Metric::power).front().value, 0.4);
}

TEST_F(MonitorTest, AfterQuittingItLooksAgainAsSoonAsTheAppHasGone) {
    bool gone = false;
    std::string asked;
    services.askToQuit = [&](const std::string& path) {
        asked = path;
        return std::optional<std::function<bool()>>([&] { return gone; });
    };
    processes[0].app = {AppIdentity::Kind::app, "/Applications/Editor.app"};
    processes[0].memory = 700 << 20;
    make().start();
    time.advance(0s);
    EXPECT_TRUE(monitor->quit("/Applications/Editor.app"));
    EXPECT_EQ(asked, "/Applications/Editor.app");
    time.advance(500ms);
    EXPECT_FALSE(monitor->toast());
    gone = true;
    time.advance(100ms);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 0.6}));
    EXPECT_EQ(monitor->toast(), "700 MB freed");
}

TEST_F(MonitorTest, AfterQuittingItLooksAgainInThreeSecondsEvenIfTheAppStays) {
    int asked = 0;
    services.askToQuit = [&](const std::string&) {
        return std::optional<std::function<bool()>>([&] { return ++asked, false; });
    };
    make().start();
    time.advance(0s);
    EXPECT_TRUE(monitor->quit("/Applications/Editor.app"));
    time.advance(3s);
    EXPECT_EQ(asked, 15);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 3}));
    EXPECT_FALSE(monitor->toast());
}

TEST_F(MonitorTest, TwoAppsThatWereAskedToQuitAreWatchedIndependently) {
    bool firstGone = false;
    services.askToQuit = [&](const std::string& path) {
        const bool isFirst = path == "first";
        return std::optional<std::function<bool()>>([&, isFirst] { return isFirst && firstGone; });
    };
    make().start();
    time.advance(0s);
    EXPECT_TRUE(monitor->quit("first"));
    EXPECT_TRUE(monitor->quit("second"));
    time.advance(1s);
    firstGone = true;
    time.advance(200ms);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 1.2}));
    time.advance(1800ms);
    EXPECT_EQ(secondsOfPasses(), (std::vector<double>{0, 1.2, 3}));
}

TEST_F(MonitorTest, ARequestThatDidNotGoOutIsNotWaitedFor) {
    make().start();
    time.advance(0s);
    EXPECT_FALSE(monitor->quit("/Applications/Editor.app")); // nobody there to ask
    services.askToQuit = [](const std::string&) { return std::optional<std::function<bool()>>(); };
    make().start();
    time.advance(0s);
    EXPECT_FALSE(monitor->quit("/Applications/Editor.app"));
    EXPECT_EQ(time.pending(), 1u); // the loop's own wait
}

TEST_F(MonitorTest, SettingTheVolumeShowsAtOnceAndUnmutes) {
    double volumeSet = -1;
    std::optional<bool> mutedSet;
    services.setVolume = [&](double volume) { volumeSet = volume; };
    services.setMuted = [&](bool muted) { mutedSet = muted; };
    sound = SoundSnapshot{.volume = 0.2, .isMuted = true};
    make();
    monitor->setVolume(0.5); // nothing is published yet: only the device hears of it
    EXPECT_EQ(volumeSet, 0.5);
    monitor->start();
    time.advance(0s);

    monitor->setVolume(0);
    EXPECT_EQ(monitor->snapshot()->sound->volume, 0);
    EXPECT_TRUE(monitor->snapshot()->sound->isMuted);
    EXPECT_FALSE(mutedSet);
    monitor->setVolume(0.7);
    EXPECT_EQ(monitor->snapshot()->sound->volume, 0.7);
    EXPECT_FALSE(monitor->snapshot()->sound->isMuted);
    EXPECT_EQ(mutedSet, false);
}

TEST_F(MonitorTest, ChangedAudioDevicesAreReadAgain) {
    int rescans = 0;
    services.readSound = [] { return SoundSnapshot{.volume = 0.9}; };
    services.rescanAudioApps = [&] { ++rescans; };
    sound = SoundSnapshot{.volume = 0.2};
    make();
    monitor->audioDevicesChanged();
    EXPECT_FALSE(monitor->snapshot());
    monitor->start();
    time.advance(0s);
    monitor->audioDevicesChanged();
    EXPECT_EQ(monitor->snapshot()->sound->volume, 0.9);
    EXPECT_EQ(monitor->audioDevicesVersion(), 2);
    EXPECT_EQ(rescans, 2);
}

TEST_F(MonitorTest, AnAppsAveragesAndPowerAreShownWithItsRow) {
    battery = BatterySnapshot{.watts = -6.0};
    make().start();
    monitor->viewAppeared(ViewKind::compact);
    time.advance(0s);
    processes[0].cpu = 1.5;
    time.advance(1s);
    const AppUsage& row = monitor->snapshot()->apps.at(0);
    EXPECT_EQ(row.cpuAverage, 1.0);
    EXPECT_EQ(row.watts, 6.0);
}

TEST_F(MonitorTest, TheSystemsRowShowsOnceItsIssueHasLastedTenSeconds) {
    processes.push_back(
        {.pid = 2, .name = "mds", .cpu = 0.9, .hasUsage = true, .app = AppIdentity::system});
    activity = SystemActivity{"mds", "Spotlight indexing", 0.9};
    make().start();
    monitor->viewAppeared(ViewKind::compact);
    time.advance(9s);
    EXPECT_EQ(monitor->snapshot()->apps.size(), 1u);
    EXPECT_FALSE(monitor->systemIssue());
    time.advance(1s);
    ASSERT_EQ(monitor->snapshot()->apps.size(), 2u);
    EXPECT_EQ(monitor->snapshot()->apps[0].name, "macOS · Spotlight indexing");
    EXPECT_EQ(monitor->snapshot()->apps[0].flag, "Unusual");
}

TEST_F(MonitorTest, StrainAndTheNotchTextsFollowTheMenuBarAndChangeOnlyWhenTheyDiffer) {
    make();
    int strainChanges = 0;
    int notchChanges = 0;
    QObject::connect(monitor.get(), &Monitor::strainChanged, [&] { ++strainChanges; });
    QObject::connect(monitor.get(), &Monitor::notchTextsChanged, [&] { ++notchChanges; });
    monitor->start();
    time.advance(10s);
    EXPECT_FALSE(monitor->strain());
    EXPECT_EQ(monitor->notchCPU(), "50%");
    EXPECT_EQ(monitor->notchMemory(), "");
    EXPECT_EQ(notchChanges, 1);
    cpu = {.user = 0.75, .system = 0.25};
    time.advance(10s);
    EXPECT_EQ(monitor->strain(), (Strain{"CPU 100%", Metric::cpu, "100%"}));
    EXPECT_EQ(strainChanges, 1);
    EXPECT_EQ(notchChanges, 2);
}

TEST_F(MonitorTest, AHotMachineIsUnderStrain) {
    make().start();
    power->thermal = ThermalState::serious;
    time.advance(0s);
    ASSERT_TRUE(monitor->strain());
    EXPECT_EQ(monitor->strain()->text, "Hot");
}

TEST_F(MonitorTest, AToastStaysThreeSecondsAndANewerOneKeepsItsOwn) {
    make();
    int changes = 0;
    QObject::connect(monitor.get(), &Monitor::toastChanged, [&] { ++changes; });
    monitor->show("1.2 GB freed");
    time.advance(2s);
    monitor->show("300 MB freed");
    time.advance(2s);
    EXPECT_EQ(monitor->toast(), "300 MB freed");
    time.advance(1s);
    EXPECT_FALSE(monitor->toast());
    EXPECT_EQ(changes, 3);
}

} // namespace
} // namespace tavero

#include "alerts/AlertCenter.h"

#include "alerts/AlertSection.h"
#include "alerts/QuietHours.h"
#include "desktop/sim/SimNotifications.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using namespace std::chrono_literals;

struct FakeCrashes final : CrashReports {
    std::vector<CrashReport> waiting;
    std::vector<Date> scans;

    std::vector<CrashReport> newReports(Date now) override {
        scans.push_back(now);
        return std::exchange(waiting, {});
    }
};

// A center over fakes, in virtual time. The tests run in UTC, and it is noon.
class AlertCenterTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time{std::chrono::sys_days(std::chrono::year(2026) / 11 / 19) + 12h};

    // What the surroundings say, and what was asked of them.
    ThermalState thermalState = ThermalState::nominal;
    std::optional<Date> bootTime;
    std::vector<std::string> listening;
    int microphoneReads = 0;
    bool notchTakesAlerts = false;
    std::vector<SystemAlert> shownInNotch;
    std::vector<std::string> quitApps;
    SimNotifications* notifications = nullptr;
    FakeCrashes* crashes = nullptr;
    std::unique_ptr<AlertCenter> center;

    void SetUp() override { restart(); }

    void restart() {
        auto ownNotifications = std::make_unique<SimNotifications>();
        auto ownCrashes = std::make_unique<FakeCrashes>();
        notifications = ownNotifications.get();
        crashes = ownCrashes.get();
        AlertServices services{
            .notifications = std::move(ownNotifications),
            .crashes = std::move(ownCrashes),
            .microphoneApps =
                [this] {
                    ++microphoneReads;
                    return listening;
                },
            .thermalState = [this] { return thermalState; },
            .bootTime = [this] { return bootTime; },
            .showInNotch =
                [this](const SystemAlert& alert) {
                    if (notchTakesAlerts) shownInNotch.push_back(alert);
                    return notchTakesAlerts;
                },
            .quitApp = [this](const std::string& path) { quitApps.push_back(path); }};
        center =
            std::make_unique<AlertCenter>(std::move(services), time.worker(1s), time, settings);
    }

    void enable(AlertKind kind, bool on = true) { settings.set(keys::alert(kind), on); }

    LiveSnapshot fullDisk() const {
        return {.date = time.now(), .diskAvailable = 1, .diskCapacity = 1000};
    }
    std::vector<std::string> delivered() const {
        std::vector<std::string> keys;
        for (const Notification& notification : notifications->delivered)
            keys.push_back(notification.key);
        return keys;
    }
    using Keys = std::vector<std::string>;
};

TEST_F(AlertCenterTest, AnAlertBecomesANotification) {
    center->check(fullDisk());
    EXPECT_EQ(
        notifications->delivered,
        std::vector{(Notification{.key = "diskFull",
                                  .title = "Your disk is almost full",
                                  .body = "Only 0.0 GB left. Your Mac slows down when it runs "
                                          "out of space.",
                                  .section = "disk"})});
}

TEST_F(AlertCenterTest, TheNotchIsAskedFirst) {
    notchTakesAlerts = true;
    center->check(fullDisk());
    EXPECT_EQ(shownInNotch.size(), 1u);
    EXPECT_TRUE(notifications->delivered.empty());
}

TEST_F(AlertCenterTest, QuietHoursGoFromTenInTheEveningToEightInTheMorning) {
    const Date midnight = std::chrono::sys_days(std::chrono::year(2026) / 11 / 19);
    // UTC and a zone that is half an hour off the hour
    for (const std::int64_t ahead : {0, 5 * 3600 + 1800, -3 * 3600 - 1800}) {
        const Calendar calendar([&](std::int64_t) { return ahead; });
        const auto isQuiet = [&](std::chrono::seconds local) {
            return QuietHours::contains(midnight + local - std::chrono::seconds(ahead), calendar);
        };
        EXPECT_FALSE(isQuiet(21h + 59min + 59s));
        EXPECT_TRUE(isQuiet(22h));
        EXPECT_TRUE(isQuiet(0s));
        EXPECT_TRUE(isQuiet(7h + 59min));
        EXPECT_FALSE(isQuiet(8h));
    }
}

TEST_F(AlertCenterTest, AnAlertOfTheNightIsDroppedAndDoesNotComeInTheMorning) {
    settings.set(keys::quietHours, true);
    time.advance(10h); // 22:00
    center->check(fullDisk());
    EXPECT_TRUE(delivered().empty());
    time.advance(10h);
    center->check(fullDisk());
    EXPECT_TRUE(delivered().empty());
}

TEST_F(AlertCenterTest, WithoutQuietHoursTheNightIsLikeTheDay) {
    time.advance(11h);
    center->check(fullDisk());
    EXPECT_EQ(delivered(), Keys{"diskFull"});
}

TEST_F(AlertCenterTest, WhatWasToldIsRememberedAcrossARestart) {
    center->check(fullDisk());
    restart();
    center->check(fullDisk());
    EXPECT_TRUE(delivered().empty());
}

TEST_F(AlertCenterTest, AnAlertThatClearedIsRememberedToo) {
    center->check(fullDisk());
    LiveSnapshot fine = fullDisk();
    fine.diskAvailable = 900;
    center->check(fine);
    time.advance(10min);
    center->check(fine);
    restart();
    time.advance(1h);
    center->check(fullDisk());
    EXPECT_EQ(delivered(), Keys{"diskFull"});
}

TEST_F(AlertCenterTest, WhatFiredADayAgoIsForgottenAtTheStart) {
    center->check(fullDisk());
    time.advance(24h);
    restart();
    center->check(LiveSnapshot{}); // saves nothing by itself
    const Bytes stored = settings.get(keys::alertMemory);
    const auto memory = AlertMemory::decoded(std::string(stored.begin(), stored.end()));
    ASSERT_TRUE(memory);
    EXPECT_TRUE(memory->active.contains("diskFull")); // but it stays silent until it has cleared
    center->check(fullDisk());
    EXPECT_TRUE(delivered().empty());
}

TEST_F(AlertCenterTest, ADamagedOrForeignMemoryIsAnEmptyOne) {
    for (const std::string json : {"", "{", "[1,2]", R"({"active":7,"lastFired":{}})", "\xff"}) {
        settings.set(keys::alertMemory, Bytes(json.begin(), json.end()));
        restart();
        center->check(fullDisk());
        EXPECT_EQ(delivered(), Keys{"diskFull"}) << json;
    }
}

TEST_F(AlertCenterTest, AKindThatIsTurnedOffIsSilentAtOnceAndBackAtOnce) {
    enable(AlertKind::diskFull, false);
    center->check(fullDisk());
    EXPECT_TRUE(delivered().empty());
    enable(AlertKind::diskFull);
    center->check(fullDisk());
    EXPECT_EQ(delivered(), Keys{"diskFull"});
}

TEST_F(AlertCenterTest, TheHeatOfTheSystemAndItsUptimeReachTheRules) {
    enable(AlertKind::throttling);
    enable(AlertKind::restart);
    thermalState = ThermalState::critical;
    bootTime = time.now() - 24h * 14;
    const LiveSnapshot snapshot{.memory = MemorySnapshot{.swapUsed = 5ull << 30}};
    center->check(snapshot);
    time.advance(1min);
    center->check(snapshot);
    EXPECT_EQ(delivered(), (Keys{"restart", "throttling"}));
}

TEST_F(AlertCenterTest, BeingOfflineIsToldAfterFifteenSecondsOfSamples) {
    const LiveSnapshot offline{.connection = ConnectionKind::offline};
    center->check(offline);
    for (int sample = 0; sample < 2; ++sample) {
        time.advance(5s);
        center->check(offline);
    }
    EXPECT_TRUE(delivered().empty());
    time.advance(5s);
    center->check(offline);
    EXPECT_EQ(delivered(), Keys{"offline"});
    EXPECT_EQ(notifications->delivered[0].section, "network");
    center->check({.connection = ConnectionKind::wired});
    EXPECT_EQ(notifications->delivered.at(1).title, "Back online");
}

TEST_F(AlertCenterTest, WithoutSamplesALossIsToldAtTheNextOne) {
    center->check({.connection = ConnectionKind::offline});
    time.advance(1h);
    EXPECT_TRUE(delivered().empty());
    center->check({.connection = ConnectionKind::offline});
    EXPECT_EQ(delivered(), Keys{"offline"});
}

TEST_F(AlertCenterTest, CrashesAreLookedForEveryHalfMinute) {
    crashes->waiting = {{.appName = "Inkwell"}};
    center->check(LiveSnapshot{});
    time.advance(29s);
    center->check(LiveSnapshot{});
    EXPECT_TRUE(crashes->scans.empty());
    time.advance(1s);
    center->check(LiveSnapshot{});
    EXPECT_EQ(delivered(), Keys{"appCrashed|Inkwell"});
    EXPECT_EQ(notifications->delivered[0].section, "overview");
    time.advance(29s);
    center->check(LiveSnapshot{});
    EXPECT_EQ(crashes->scans.size(), 1u);
}

TEST_F(AlertCenterTest, NobodyWhoDoesNotWantToHearOfCrashesIsScannedFor) {
    enable(AlertKind::appCrashed, false);
    time.advance(1h);
    center->check(LiveSnapshot{});
    EXPECT_TRUE(crashes->scans.empty());
}

TEST_F(AlertCenterTest, TheMicrophoneIsReadOnlyForWhoWantsToHearOfIt) {
    center->check(LiveSnapshot{});
    time.advance(1min);
    EXPECT_EQ(microphoneReads, 0);
}

TEST_F(AlertCenterTest, TheMicrophoneIsReadEveryTenSecondsAndNeverTwiceAtATime) {
    enable(AlertKind::microphone);
    listening = {"Parley"};
    center->check(LiveSnapshot{});
    EXPECT_TRUE(delivered().empty()); // the answer takes a second
    center->check(LiveSnapshot{});
    time.advance(1s);
    EXPECT_EQ(delivered(), Keys{"microphone|Parley"});
    EXPECT_EQ(microphoneReads, 1);
    time.advance(8s);
    center->check(LiveSnapshot{});
    time.advance(1s);
    EXPECT_EQ(microphoneReads, 1);
    center->check(LiveSnapshot{});
    time.advance(1s);
    EXPECT_EQ(microphoneReads, 2);
}

TEST_F(AlertCenterTest, ALowDeviceIsTold) {
    center->check(BluetoothSnapshot{
        .connected = {{.name = "Earbuds", .batteries = {{.label = "Left", .percent = 9}}}}});
    EXPECT_EQ(delivered(), Keys{"bluetoothBattery|Earbuds|10"});
    EXPECT_EQ(notifications->delivered[0].section, "bluetooth");
}

TEST_F(AlertCenterTest, OnlyAnAlertOfAnAppWithABundleCanQuitIt) {
    enable(AlertKind::appCPU);
    const AppUsage app{.identity = {AppIdentity::Kind::app, "/Applications/A.app"},
                       .name = "A",
                       .bundlePath = "/Applications/A.app",
                       .cpu = 1};
    const LiveSnapshot busy{.apps = {app}};
    center->check(busy);
    time.advance(5min);
    center->check(busy);
    ASSERT_EQ(delivered().size(), 1u);
    const Notification shown = notifications->delivered[0];
    EXPECT_EQ(shown.bundlePath, "/Applications/A.app");
    notifications->act(NotificationAction::quit, shown);
    EXPECT_EQ(quitApps, Keys{"/Applications/A.app"});
    EXPECT_EQ(center->pendingSection(), std::nullopt);
    notifications->act(NotificationAction::quit, {.section = "disk"});
    EXPECT_EQ(quitApps.size(), 1u);
}

TEST_F(AlertCenterTest, AClickAsksForThePageOfTheAlertAndAnUnknownOneForTheOverview) {
    notifications->act(NotificationAction::open, {.section = "bluetooth"});
    EXPECT_EQ(center->pendingSection(), Section::bluetooth);
    EXPECT_EQ(center->takePendingSection(), Section::bluetooth);
    EXPECT_EQ(center->pendingSection(), std::nullopt);
    for (const char* unknown : {"", "Disk", "somewhere"}) {
        notifications->act(NotificationAction::open, {.section = unknown});
        EXPECT_EQ(center->takePendingSection(), Section::overview);
    }
}

TEST_F(AlertCenterTest, EveryKindHasItsPage) {
    const std::vector<std::string> sections{
        "cpu",   "memory", "disk",     "memory", "disk",   "cpu",   "bluetooth", "sound",
        "power", "gpu",    "overview", "cpu",    "memory", "power", "power",     "network"};
    for (std::size_t kind = 0; kind < allAlertKinds.size(); ++kind)
        EXPECT_EQ(rawValue(section(allAlertKinds[kind].kind)), sections[kind]);
}

TEST_F(AlertCenterTest, AFailedDeliveryIsKeptForTheUserToRead) {
    notifications->error = "The service is gone.";
    center->check(fullDisk());
    EXPECT_EQ(center->lastError(), "The service is gone.");
}

TEST_F(AlertCenterTest, ATestIsSentToWhoeverMayHearIt) {
    EXPECT_EQ(center->sendTest(), "Notifications are off for Tavero");
    EXPECT_TRUE(delivered().empty());
    center->requestAuthorization();
    EXPECT_EQ(center->authorization(), NotificationAuthorization::authorized);
    settings.set(keys::quietHours, true);
    time.advance(11h);
    EXPECT_EQ(center->sendTest(), "Sent. If you don't see it, check Focus.");
    EXPECT_EQ(notifications->delivered,
              std::vector{(Notification{
                  .key = "test",
                  .title = "Alerts are on",
                  .body = "This is how Tavero tells you when something needs attention.",
                  .section = "cpu"})});
    notchTakesAlerts = true;
    EXPECT_EQ(center->sendTest(), "Shown in the notch");
    EXPECT_EQ(delivered().size(), 1u);
}

TEST_F(AlertCenterTest, ARefusalAndAnErrorOfItAreFoundOut) {
    notifications->userAllows = false;
    notifications->error = "Not allowed.";
    center->requestAuthorization();
    EXPECT_EQ(center->authorization(), NotificationAuthorization::denied);
    EXPECT_EQ(center->lastError(), "Not allowed.");
}

TEST_F(AlertCenterTest, AMachineWithoutAnyOfItStillChecks) {
    enable(AlertKind::microphone);
    AlertCenter bare({}, time.worker(), time, settings);
    time.advance(1min);
    bare.check(fullDisk());
    bare.check(BluetoothSnapshot{});
    bare.requestAuthorization();
    EXPECT_EQ(bare.sendTest(), "Notifications are off for Tavero");
}

} // namespace
} // namespace tavero

#include "alerts/AlertCenter.h"
#include "desktop/linux/BusNotifications.h"
#include "desktop/linux/test/NotificationService.h"
#include "desktop/sim/SimNotifications.h"
#include "time/VirtualTime.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

// The whole road of alerts to a real service of notifications, on a session bus of its own.
namespace tavero {
namespace {

using namespace std::chrono_literals;

const std::string spinner = "/usr/share/applications/spinner.desktop";

struct OneCrash final : CrashReports {
    std::vector<CrashReport> newReports(Date) override { return std::exchange(waiting, {}); }
    std::vector<CrashReport> waiting{{"Inkwell", std::nullopt}};
};

// A center that hears of everything that can go wrong within a quarter of an hour.
class Trouble {
  public:
    explicit Trouble(std::unique_ptr<Notifications> notifications) {
        for (const AlertKindEntry& kind : allAlertKinds)
            settings_.set(keys::alert(kind.kind), true);
        AlertServices services{
            .notifications = std::move(notifications),
            .crashes = std::make_unique<OneCrash>(),
            .microphoneApps = [] { return std::vector<std::string>{"Recorder"}; },
            .thermalState = [] { return ThermalState::serious; },
            .bootTime = [this] { return std::optional(time_.now() - 20 * 24h); },
            .quitApp = [this](const std::string& path) { quitApps.push_back(path); }};
        center.emplace(std::move(services), time_.worker(), time_, settings_);
    }

    void happen() {
        for (int minute = 0; minute < 15; ++minute) {
            center->check(snapshot());
            time_.advance(1min);
        }
        center->check(BluetoothSnapshot{
            .connected = {{.name = "Buds", .batteries = {{.label = "Left", .percent = 9}}}}});
        LiveSnapshot pluggedIn = snapshot();
        pluggedIn.battery = BatterySnapshot{.percent = 100, .onExternalPower = true};
        center->check(pluggedIn);
    }

    std::vector<std::string> quitApps;
    std::optional<AlertCenter> center;

  private:
    LiveSnapshot snapshot() const {
        const AppUsage app{.identity = {AppIdentity::Kind::app, spinner},
                           .name = "Spinner <&> Co",
                           .bundlePath = spinner,
                           .cpu = 0.95,
                           .memory = 9ull << 30,
                           .diskWriteRate = 50e6};
        return {.date = time_.now(),
                .memory = MemorySnapshot{.total = 16ull << 30,
                                         .swapUsed = 9ull << 30,
                                         .pressure = MemoryPressure::critical},
                .gpu = GPUSnapshot{.device = 0.97},
                .battery = BatterySnapshot{.percent = 15},
                .cpuTemperature = 99,
                .diskAvailable = 1'000'000'000,
                .diskCapacity = 500'000'000'000,
                .connection = ConnectionKind::offline,
                .apps = {app},
                .memoryHeavyApps = {app}};
    }

    QTemporaryDir folder_;
    Settings settings_{folder_.filePath("settings.ini")};
    VirtualTime time_;
};

std::vector<Notification> expected() {
    auto notifications = std::make_unique<SimNotifications>();
    const SimNotifications& recorder = *notifications;
    Trouble trouble(std::move(notifications));
    trouble.happen();
    return recorder.delivered;
}

std::unique_ptr<Notifications> onTheBus(std::chrono::milliseconds patience = 5s) {
    return std::make_unique<BusNotifications>(QDBusConnection::sessionBus(), patience);
}

// The id of the notification that the service showed for this one, counted as the service does.
uint idOf(const std::vector<NotificationService::Shown>& shown, const std::string& title) {
    const auto found = std::find_if(shown.begin(), shown.end(),
                                    [&](const auto& one) { return one.title == title; });
    return static_cast<uint>(found - shown.begin()) + 1;
}

TEST(BusAlerts, AllSixteenKindsArriveWithTheirTexts) {
    const std::vector<Notification> sent = expected();
    std::set<std::string> kinds;
    for (const Notification& one : sent) kinds.insert(one.key.substr(0, one.key.find('|')));
    ASSERT_EQ(kinds.size(), allAlertKinds.size());

    NotificationService service;
    service.start();
    Trouble trouble(onTheBus());
    trouble.happen();
    std::vector<NotificationService::Shown> shown;
    ASSERT_TRUE(happens([&] { return (shown = service.shown()).size() >= sent.size(); }));
    ASSERT_EQ(shown.size(), sent.size());
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(shown[i].title, sent[i].title);
        EXPECT_EQ(shown[i].body,
                  QString::fromStdString(sent[i].body).toHtmlEscaped().toStdString());
        EXPECT_EQ(shown[i].actions.contains("quit"), !sent[i].bundlePath.empty()) << sent[i].key;
        EXPECT_EQ(shown[i].replaces, 0u);
    }
    EXPECT_EQ(trouble.center->lastError(), std::nullopt);
}

TEST(BusAlerts, QuitReachesTheAppAndAClickThePage) {
    NotificationService service;
    service.start();
    Trouble trouble(onTheBus());
    trouble.happen();
    const std::size_t count = expected().size();
    ASSERT_TRUE(happens([&] { return service.shown().size() == count; }));
    const auto shown = service.shown();

    service.invoke(idOf(shown, "Spinner <&> Co is working hard"), "quit");
    ASSERT_TRUE(happens([&] { return !trouble.quitApps.empty(); }));
    EXPECT_EQ(trouble.quitApps, std::vector{spinner});
    EXPECT_EQ(trouble.center->pendingSection(), std::nullopt);

    service.invoke(idOf(shown, "Your disk is almost full"), "default");
    ASSERT_TRUE(happens([&] { return trouble.center->pendingSection().has_value(); }));
    EXPECT_EQ(trouble.center->takePendingSection(), Section::disk);
    service.invoke(idOf(shown, "Buds is almost out of battery"), "default");
    ASSERT_TRUE(happens([&] { return trouble.center->pendingSection().has_value(); }));
    EXPECT_EQ(trouble.center->takePendingSection(), Section::bluetooth);
    EXPECT_EQ(trouble.quitApps.size(), 1u);
}

TEST(BusAlerts, WhoeverCannotDeliverSaysWhyAndTheNextOnesArrive) {
    NotificationService service;
    Trouble trouble(onTheBus(200ms));
    trouble.center->refreshAuthorization();
    trouble.happen(); // nobody is there
    ASSERT_TRUE(happens([&] { return trouble.center->lastError().has_value(); }));
    ASSERT_TRUE(happens(
        [&] { return trouble.center->authorization() == NotificationAuthorization::denied; }));
    EXPECT_EQ(trouble.center->sendTest(), "Notifications are off for Tavero");

    service.start();
    trouble.center->refreshAuthorization();
    ASSERT_TRUE(happens(
        [&] { return trouble.center->authorization() == NotificationAuthorization::authorized; }));
    EXPECT_EQ(trouble.center->sendTest(), "Sent. If you don't see it, check Focus.");
    ASSERT_TRUE(happens([&] {
        const auto shown = service.shown();
        return !shown.empty() && shown.back().title == "Alerts are on";
    }));

    service.refuse();
    trouble.center->sendTest();
    ASSERT_TRUE(happens([&] { return trouble.center->lastError() == "There is no room"; }));

    service.hang();
    trouble.center->sendTest(); // and comes back at once
    ASSERT_TRUE(happens([&] { return trouble.center->lastError() != "There is no room"; }));

    service.end();
    service.start();
    trouble.center->sendTest();
    ASSERT_TRUE(happens([&] { return service.shown().size() == 1; }));
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

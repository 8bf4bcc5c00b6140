#include "alerts/AlertCenter.h"
#include "bluetooth/Bluetooth.h"
#include "desktop/mac/MacBluetooth.h"
#include "desktop/sim/SimNotifications.h"
#include "insights/History.h"
#include "platform/sim/SimMachine.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// The simulated Mac's earbuds run low and are charged; alerts and history look on.
class Earbuds : public testing::Test {
  protected:
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time{std::chrono::sys_days(std::chrono::year(2026) / 11 / 19) + 9h};
    SimMachine sim{earbudsRunningLow(), [this] { return time.now(); }};
    SimNotifications* notifications = nullptr;
    std::unique_ptr<AlertCenter> alerts;
    std::unique_ptr<History> history;
    std::unique_ptr<Bluetooth> bluetooth;

    void SetUp() override {
        auto ownNotifications = std::make_unique<SimNotifications>();
        notifications = ownNotifications.get();
        alerts = std::make_unique<AlertCenter>(
            AlertServices{.notifications = std::move(ownNotifications)}, time.worker(), time,
            settings);
        history = std::make_unique<History>(std::nullopt, time.worker(), time, settings);
        bluetooth = std::make_unique<Bluetooth>(
            BluetoothServices{
                .control = std::make_unique<MacBluetooth>(sim.bluetoothReport(),
                                                          sim.bluetoothCalls(), time.worker(1s)),
                .checkAlerts = [this](const auto& snapshot) { alerts->check(snapshot); },
                .recordHistory =
                    [this](const auto& snapshot) { history->recordBluetooth(snapshot); }},
            time, settings);
    }

    // As the monitor does.
    void watch(std::chrono::minutes duration, std::chrono::minutes interval) {
        for (auto passed = 0min; passed < duration; passed += interval) {
            bluetooth->refresh();
            time.advance(interval);
        }
    }

    std::vector<std::string> told() const {
        std::vector<std::string> told;
        for (const Notification& notification : notifications->delivered)
            told.push_back(notification.key + ": " + notification.body);
        return told;
    }

    std::vector<DeviceCharges> charges() {
        std::optional<InsightsReport> report;
        history->report(7, [&](std::optional<InsightsReport> answer) { report = answer; });
        time.advance(1s);
        return report.value_or(InsightsReport{}).deviceCharges;
    }
};

TEST_F(Earbuds, AlertOnceAtTwentyAndOnceAtTenAndCountOneCharge) {
    watch(4h, 1min);
    EXPECT_EQ(told(),
              (std::vector<std::string>{
                  "bluetoothBattery|Anna’s Earbuds|20: 20% left (Right). Charge it soon.",
                  "bluetoothBattery|Anna’s Earbuds|10: 10% left (Right). Charge it soon."}));
    EXPECT_EQ(charges(), (std::vector<DeviceCharges>{{.name = "Anna’s Earbuds", .charges = 1}}));
}

TEST_F(Earbuds, TheSameIsSeenWhenTheItemIsHidden) {
    watch(4h, 10min);
    EXPECT_EQ(told().size(), 2u);
    EXPECT_EQ(charges(), (std::vector<DeviceCharges>{{.name = "Anna’s Earbuds", .charges = 1}}));
}

TEST_F(Earbuds, WithoutAHistoryTheAlertsCome) {
    settings.set(keys::keepHistory, false);
    watch(4h, 10min);
    EXPECT_EQ(told().size(), 2u);
    EXPECT_TRUE(charges().empty());
}

TEST_F(Earbuds, AreDisconnectedAndConnectedByTheirUser) {
    watch(1min, 1min);
    const BluetoothDevice earbuds = bluetooth->snapshot()->connected.at(0);
    ASSERT_EQ(earbuds.name, "Anna’s Earbuds");
    std::optional<bool> ok;
    const auto done = [&](bool succeeded) { ok = succeeded; };

    bluetooth->setConnected(false, earbuds, done); // asks for permission, which is given
    time.advance(5s);
    EXPECT_EQ(ok, true);
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::granted);
    EXPECT_EQ(bluetooth->snapshot()->connected.size(), 1u);

    bluetooth->setConnected(true, earbuds, done);
    time.advance(5s);
    EXPECT_EQ(ok, true);
    EXPECT_EQ(bluetooth->snapshot()->connected.size(), 2u);
    EXPECT_EQ(bluetooth->machineName(), "Anna’s MacBook");

    const BluetoothDevice speaker = bluetooth->snapshot()->paired.at(0);
    bluetooth->setConnected(true, speaker, done);
    time.advance(5s);
    EXPECT_EQ(ok, false);
    EXPECT_EQ(bluetooth->failure(speaker.address.value()), BluetoothFailure::connect);
}

} // namespace
} // namespace tavero

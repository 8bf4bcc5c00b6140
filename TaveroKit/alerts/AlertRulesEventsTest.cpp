#include "alerts/AlertRules.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class EventRulesTest : public testing::Test {
  protected:
    AlertRules rules{{AlertKind::bluetoothBattery, AlertKind::microphone, AlertKind::appCrashed,
                      AlertKind::offline}};
    Date now = Date(1'800'000'000s);

    std::vector<SystemAlert> batteries(std::vector<BluetoothDevice::Battery> of,
                                       const std::string& name = "Earbuds") {
        now += 60s;
        return rules.evaluate(
            BluetoothSnapshot{.connected = {{.name = name, .batteries = std::move(of)}}}, now);
    }
    // How many alerts a device with one battery at this level raises.
    std::size_t at(std::int64_t percent) { return batteries({{"Battery", percent}}).size(); }

    std::vector<SystemAlert> microphone(const std::vector<std::string>& apps) {
        return rules.evaluateMicrophone(apps, now);
    }
    std::vector<SystemAlert> online(bool isOnline, std::chrono::seconds later = 0s) {
        now += later;
        return rules.evaluateOnline(isOnline, now);
    }
};

TEST_F(EventRulesTest, ADeviceIsToldAtTwentyAndAtTenOnceEach) {
    EXPECT_EQ(at(21), 0u);
    EXPECT_EQ(at(20), 1u);
    EXPECT_EQ(at(11), 0u);
    EXPECT_EQ(at(10), 1u);
    EXPECT_EQ(at(1), 0u);
    EXPECT_EQ(at(30), 0u);
    EXPECT_EQ(at(10), 0u); // no reset yet
    EXPECT_EQ(at(31), 0u);
    EXPECT_EQ(at(20), 1u);
}

TEST_F(EventRulesTest, ADeviceWithOneBatteryIsToldWithoutItsLabel) {
    EXPECT_EQ(batteries({{"Battery", 9}}, "Mouse"),
              std::vector{(SystemAlert{.kind = AlertKind::bluetoothBattery,
                                       .key = "bluetoothBattery|Mouse|10",
                                       .title = "Mouse is almost out of battery",
                                       .body = "9% left. Charge it soon."})});
}

TEST_F(EventRulesTest, OfSeveralBatteriesTheLowestIsToldTheCaseIncluded) {
    EXPECT_EQ(batteries({{"Left", 50}, {"Right", 40}, {"Case", 5}}).at(0).body,
              "5% left (Case). Charge it soon.");
}

TEST_F(EventRulesTest, OfTwoEqualBatteriesTheFirstIsTold) {
    EXPECT_EQ(batteries({{"Left", 15}, {"Right", 15}}).at(0).body,
              "15% left (Left). Charge it soon.");
}

TEST_F(EventRulesTest, ADeviceWithoutABatteryIsPassedOverAndKeepsItsMark) {
    EXPECT_EQ(at(15), 1u);
    EXPECT_TRUE(batteries({}).empty());
    EXPECT_EQ(at(15), 0u);
}

TEST_F(EventRulesTest, TwoDevicesOfOneNameShareAnAnnouncement) {
    const BluetoothDevice device{.name = "Earbuds", .batteries = {{"Battery", 15}}};
    EXPECT_EQ(rules.evaluate(BluetoothSnapshot{.connected = {device, device}}, now).size(), 1u);
}

TEST_F(EventRulesTest, APairedDeviceThatIsNotConnectedIsNotJudged) {
    const BluetoothDevice device{.name = "Earbuds", .batteries = {{"Battery", 5}}};
    EXPECT_TRUE(rules.evaluate(BluetoothSnapshot{.paired = {device}}, now).empty());
}

TEST_F(EventRulesTest, ABatteryThatWasSilentIsToldWhenItsKindIsTurnedOn) {
    rules.enabled.erase(AlertKind::bluetoothBattery);
    EXPECT_EQ(at(15), 0u);
    rules.enabled.insert(AlertKind::bluetoothBattery);
    EXPECT_EQ(at(14), 1u);
}

TEST_F(EventRulesTest, AnAppThatBeginsToListenIsTold) {
    EXPECT_EQ(microphone({"Parley"}),
              std::vector{(SystemAlert{.kind = AlertKind::microphone,
                                       .key = "microphone|Parley",
                                       .title = "Parley is using the microphone",
                                       .body = "It started listening just now.",
                                       .appName = "Parley"})});
    EXPECT_TRUE(microphone({"Parley"}).empty());
}

TEST_F(EventRulesTest, SeveralNewListenersAreToldInTheOrderOfTheirNames) {
    const auto alerts = microphone({"Zither", "Parley", "Zither"});
    ASSERT_EQ(alerts.size(), 2u);
    EXPECT_EQ(alerts[0].appName, "Parley");
    EXPECT_EQ(alerts[1].appName, "Zither");
}

TEST_F(EventRulesTest, AnAppThatStopsAndStartsWithinTenMinutesStaysSilent) {
    microphone({"Parley"});
    microphone({});
    now += 599s;
    EXPECT_TRUE(microphone({"Parley"}).empty());
    microphone({});
    now += 1s;
    EXPECT_EQ(microphone({"Parley"}).size(), 1u);
}

TEST_F(EventRulesTest, AnAppThatListenedWhileTheKindWasOffIsNotToldLater) {
    rules.enabled.erase(AlertKind::microphone);
    EXPECT_TRUE(microphone({"Parley"}).empty());
    rules.enabled.insert(AlertKind::microphone);
    EXPECT_TRUE(microphone({"Parley"}).empty());
}

TEST_F(EventRulesTest, ACrashIsToldWithoutAnythingToQuit) {
    EXPECT_EQ(
        rules.evaluateCrashes({{.appName = "Inkwell", .bundleID = "com.example.inkwell"}}, now),
        std::vector{(SystemAlert{.kind = AlertKind::appCrashed,
                                 .key = "appCrashed|Inkwell",
                                 .title = "Inkwell quit unexpectedly",
                                 .body = "macOS saved a crash report. Reopen it to carry "
                                         "on."})});
}

TEST_F(EventRulesTest, SeveralCrashesOfOneAppInAnHourAreToldOnce) {
    const CrashReport inkwell{.appName = "Inkwell"};
    EXPECT_EQ(rules.evaluateCrashes({inkwell, {.appName = "Parley"}, inkwell}, now).size(), 2u);
    now += 1h - 1s;
    EXPECT_TRUE(rules.evaluateCrashes({inkwell}, now).empty());
    now += 1s;
    EXPECT_EQ(rules.evaluateCrashes({inkwell}, now).size(), 1u);
}

TEST_F(EventRulesTest, ALossOfFifteenSecondsIsToldAndSoIsTheReturn) {
    EXPECT_TRUE(online(false).empty());
    EXPECT_TRUE(online(false, 14s).empty());
    EXPECT_EQ(online(false, 1s),
              std::vector{(SystemAlert{.kind = AlertKind::offline,
                                       .key = "offline",
                                       .title = "You're offline",
                                       .body = "Your Mac lost its internet connection."})});
    EXPECT_TRUE(online(false, 1h).empty());
    EXPECT_EQ(online(true),
              std::vector{(SystemAlert{.kind = AlertKind::offline,
                                       .key = "offline",
                                       .title = "Back online",
                                       .body = "Your internet connection is back."})});
    EXPECT_TRUE(online(true).empty());
}

TEST_F(EventRulesTest, AShortLossIsSilentAndItsTimeStartsAgain) {
    online(false);
    EXPECT_TRUE(online(true, 14s).empty());
    EXPECT_TRUE(online(false, 1s).empty());
    EXPECT_TRUE(online(false, 14s).empty());
    EXPECT_EQ(online(false, 1s).size(), 1u);
}

TEST_F(EventRulesTest, WhoeverHeardOfTheLossHearsOfTheReturn) {
    online(false);
    ASSERT_EQ(online(false, 15s).size(), 1u);
    rules.enabled.clear();
    EXPECT_EQ(online(true).size(), 1u);
}

TEST_F(EventRulesTest, ALossThatNobodyHeardOfHasASilentReturn) {
    rules.enabled.clear();
    online(false);
    EXPECT_TRUE(online(false, 1h).empty());
    EXPECT_TRUE(online(true).empty());
}

} // namespace
} // namespace tavero

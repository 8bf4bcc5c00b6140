#include "bluetooth/Bluetooth.h"

#include "time/VirtualTime.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// A system of settable answers, which it gives at once unless it is told to wait.
struct FakeControl final : BluetoothControl {
    Snapshot answer = BluetoothSnapshot{.isOn = true};
    BluetoothPermission allowed = BluetoothPermission::granted;
    BluetoothPermission userSays = BluetoothPermission::granted;
    std::map<std::string, std::int64_t> rssis;
    bool works = true; // connecting and disconnecting
    bool waits = false;
    bool asksSlowly = false;
    std::optional<std::string> name;

    int reads = 0;
    int prompts = 0;
    std::vector<std::string> operations;
    std::vector<std::function<void()>> waiting;

    void read(std::function<void(Snapshot)> done) override {
        ++reads;
        done(answer);
    }
    BluetoothPermission permission() override { return allowed; }
    void requestPermission(std::function<void()> done) override {
        if (allowed != BluetoothPermission::notAsked) return done();
        ++prompts;
        answerLater(asksSlowly, [this, done = std::move(done)] {
            allowed = userSays;
            done();
        });
    }
    std::optional<std::int64_t> rssi(const std::string& address) override {
        const auto found = rssis.find(address);
        return found == rssis.end() ? std::nullopt : std::optional(found->second);
    }
    void connect(const std::string& address, std::function<void(bool)> done) override {
        operate("connect " + address, std::move(done));
    }
    void disconnect(const std::string& address, std::function<void(bool)> done) override {
        operate("disconnect " + address, std::move(done));
    }
    std::optional<std::string> machineName() override { return name; }

    void answerAll() {
        for (const auto& reply : std::exchange(waiting, {})) reply();
    }

  private:
    void operate(std::string operation, std::function<void(bool)> done) {
        operations.push_back(std::move(operation));
        answerLater(waits, [this, done = std::move(done)] { done(works); });
    }
    void answerLater(bool later, std::function<void()> reply) {
        if (later)
            waiting.push_back(std::move(reply));
        else
            reply();
    }
};

const BluetoothDevice mouse{
    .name = "Mouse", .batteries = {{"Battery", 15}}, .address = "0C:11", .rssi = -60};
const BluetoothDevice speaker{.name = "Speaker", .address = "0C:22"};

class BluetoothTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time;
    FakeControl* control = nullptr;
    std::vector<BluetoothSnapshot> checked;
    std::vector<BluetoothSnapshot> recorded;
    std::unique_ptr<Bluetooth> bluetooth;

    void SetUp() override { start({}); }

    void start(BluetoothPermission permission) {
        auto ownControl = std::make_unique<FakeControl>();
        control = ownControl.get();
        control->allowed = permission;
        control->answer =
            BluetoothSnapshot{.isOn = true, .connected = {mouse}, .paired = {speaker}};
        bluetooth = std::make_unique<Bluetooth>(
            BluetoothServices{
                .control = std::move(ownControl),
                .checkAlerts = [this](const auto& snapshot) { checked.push_back(snapshot); },
                .recordHistory = [this](const auto& snapshot) { recorded.push_back(snapshot); }},
            time, settings);
    }
    void SetUpGranted() { start(BluetoothPermission::granted); }

    std::optional<bool> result;
    void set(bool connected, const BluetoothDevice& device) {
        result.reset();
        bluetooth->setConnected(connected, device, [this](bool ok) { result = ok; });
    }
};

TEST_F(BluetoothTest, ThereIsNoSnapshotUntilTheFirstThatCouldBeRead) {
    EXPECT_EQ(bluetooth->snapshot(), std::nullopt);
    control->answer = std::nullopt;
    bluetooth->refresh();
    EXPECT_EQ(bluetooth->snapshot(), std::nullopt);
    EXPECT_TRUE(checked.empty());
}

TEST_F(BluetoothTest, WhatCanNotBeReadLeavesTheLastReading) {
    bluetooth->refresh();
    const auto before = bluetooth->snapshot();
    ASSERT_TRUE(before);
    control->answer = std::nullopt;
    bool isDone = false;
    bluetooth->refresh([&] { isDone = true; });
    EXPECT_TRUE(isDone);
    EXPECT_EQ(bluetooth->snapshot(), before);
    EXPECT_EQ(checked.size(), 1u);
    EXPECT_EQ(recorded.size(), 1u);
}

TEST_F(BluetoothTest, AnEqualReadingTellsNobodyButAlertsAndHistorySeeIt) {
    const QSignalSpy changes(bluetooth.get(), &Bluetooth::snapshotChanged);
    bluetooth->refresh();
    bluetooth->refresh();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(checked.size(), 2u);
    EXPECT_EQ(recorded.size(), 2u);
    control->answer->isDiscoverable = true;
    bluetooth->refresh();
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(BluetoothTest, WithoutKeepingAHistoryNothingReachesItAndAlertsStillRun) {
    settings.set(keys::keepHistory, false);
    bluetooth->refresh();
    EXPECT_TRUE(recorded.empty());
    EXPECT_EQ(checked.size(), 1u);
    settings.set(keys::keepHistory, true);
    bluetooth->refresh();
    EXPECT_EQ(recorded.size(), 1u);
}

TEST_F(BluetoothTest, AKnownSignalReplacesTheOneThatWasRead) {
    SetUpGranted();
    control->answer->connected = {mouse, {.name = "Keys", .address = "0C:33", .rssi = -70}};
    control->rssis["0C:11"] = -42;
    bluetooth->refresh();
    EXPECT_EQ(bluetooth->snapshot()->connected[0].rssi, -42);
    EXPECT_EQ(bluetooth->snapshot()->connected[1].rssi, -70); // it isn't known
    EXPECT_EQ(checked.back(), bluetooth->snapshot());
}

TEST_F(BluetoothTest, OnlyConnectedDevicesWithAnAddressAreAskedForTheirSignal) {
    SetUpGranted();
    control->answer->connected = {{.name = "Mouse"}};
    control->rssis = {{"", -42}, {"0C:22", -42}};
    bluetooth->refresh();
    EXPECT_EQ(bluetooth->snapshot()->connected[0].rssi, std::nullopt);
    EXPECT_EQ(bluetooth->snapshot()->paired[0].rssi, std::nullopt);
}

TEST_F(BluetoothTest, WithoutPermissionTheSignalStaysAsReadAndBatteriesShow) {
    for (const auto permission : {BluetoothPermission::notAsked, BluetoothPermission::denied}) {
        start(permission);
        control->rssis["0C:11"] = -42;
        bluetooth->refresh();
        EXPECT_EQ(bluetooth->snapshot()->connected, std::vector{mouse});
        EXPECT_EQ(control->prompts, 0); // nobody is asked for that
    }
}

TEST_F(BluetoothTest, ASurfaceIsServedAtOnceAndThenEveryHalfMinute) {
    time.advance(10min);
    EXPECT_EQ(control->reads, 0);
    bluetooth->surfaceAppeared();
    EXPECT_EQ(control->reads, 1);
    time.advance(29s);
    EXPECT_EQ(control->reads, 1);
    time.advance(1s);
    EXPECT_EQ(control->reads, 2);
    time.advance(5min);
    EXPECT_EQ(control->reads, 12);
    bluetooth->surfaceDisappeared();
    time.advance(10min);
    EXPECT_EQ(control->reads, 12);
    EXPECT_EQ(time.pending(), 0u);
}

TEST_F(BluetoothTest, AnotherSurfaceStartsTheLoopAnewAndDoesNotDoubleIt) {
    bluetooth->surfaceAppeared();
    time.advance(20s);
    bluetooth->surfaceAppeared();
    EXPECT_EQ(control->reads, 2);
    time.advance(29s);
    EXPECT_EQ(control->reads, 2);
    time.advance(1s);
    EXPECT_EQ(control->reads, 3);
    EXPECT_EQ(time.pending(), 1u);
}

TEST_F(BluetoothTest, OneSurfaceThatGoesAwayLeavesTheLoopToTheOthers) {
    bluetooth->surfaceAppeared();
    bluetooth->surfaceAppeared();
    bluetooth->surfaceDisappeared();
    time.advance(30s);
    EXPECT_EQ(control->reads, 3);
    bluetooth->surfaceDisappeared();
    bluetooth->surfaceDisappeared(); // one too many counts for nothing
    time.advance(1min);
    EXPECT_EQ(control->reads, 3);
    bluetooth->surfaceAppeared();
    EXPECT_EQ(control->reads, 4);
}

TEST_F(BluetoothTest, ADeviceIsBusyUntilTheReadingAfterASecond) {
    SetUpGranted();
    set(true, speaker);
    EXPECT_EQ(control->operations, std::vector<std::string>{"connect 0C:22"});
    EXPECT_EQ(bluetooth->busy(), std::set<std::string>{"0C:22"});
    control->answer->connected = {mouse, speaker};
    control->answer->paired.clear();
    time.advance(999ms);
    EXPECT_EQ(control->reads, 0);
    EXPECT_EQ(result, std::nullopt);
    time.advance(1ms);
    EXPECT_EQ(control->reads, 1);
    EXPECT_EQ(result, true);
    EXPECT_TRUE(bluetooth->busy().empty());
    EXPECT_EQ(bluetooth->snapshot()->connected.size(), 2u);
    EXPECT_EQ(time.pending(), 0u);
}

TEST_F(BluetoothTest, DisconnectingIsTheSameTheOtherWay) {
    SetUpGranted();
    set(false, mouse);
    EXPECT_EQ(control->operations, std::vector<std::string>{"disconnect 0C:11"});
    time.advance(1s);
    EXPECT_EQ(result, true);
}

TEST_F(BluetoothTest, ASecondToggleOfABusyDeviceHasNoEffect) {
    SetUpGranted();
    control->waits = true;
    set(true, speaker);
    set(false, speaker);
    EXPECT_EQ(result, false);
    EXPECT_EQ(control->operations.size(), 1u);
    set(false, mouse); // another device is not concerned
    EXPECT_EQ(bluetooth->busy().size(), 2u);
    control->answerAll();
    time.advance(1s);
    EXPECT_TRUE(bluetooth->busy().empty());
    set(true, speaker);
    EXPECT_EQ(control->operations.size(), 3u);
}

TEST_F(BluetoothTest, AFailureLeavesNothingBusyAndIsRememberedUntilTheNextAttempt) {
    SetUpGranted();
    const QSignalSpy failures(bluetooth.get(), &Bluetooth::failuresChanged);
    control->works = false;
    set(true, speaker);
    set(false, mouse);
    time.advance(1s);
    EXPECT_EQ(result, false);
    EXPECT_TRUE(bluetooth->busy().empty());
    EXPECT_EQ(bluetooth->failure("0C:22"), BluetoothFailure::connect);
    EXPECT_EQ(bluetooth->failure("0C:11"), BluetoothFailure::disconnect);
    EXPECT_EQ(bluetooth->failure("0C:33"), std::nullopt);
    EXPECT_EQ(failures.count(), 2);
    set(true, speaker);
    EXPECT_EQ(bluetooth->failure("0C:22"), std::nullopt);
}

TEST_F(BluetoothTest, AFailureIsForgottenWhenTheDeviceIsAsWanted) {
    SetUpGranted();
    control->works = false;
    set(true, speaker);
    time.advance(1s);
    ASSERT_TRUE(bluetooth->failure("0C:22"));
    control->answer->connected.push_back(speaker); // it came by itself
    bluetooth->refresh();
    EXPECT_EQ(bluetooth->failure("0C:22"), std::nullopt);
}

TEST_F(BluetoothTest, FailuresHaveWords) {
    EXPECT_EQ(text(BluetoothFailure::connect), "Couldn’t connect. Is it on and nearby?");
    EXPECT_EQ(text(BluetoothFailure::disconnect), "Couldn’t disconnect");
}

TEST_F(BluetoothTest, AnAnswerThatDoesNotComeIsAFailureAfterAMinute) {
    SetUpGranted();
    control->waits = true;
    set(true, speaker);
    time.advance(61s);
    EXPECT_EQ(result, false);
    EXPECT_TRUE(bluetooth->busy().empty());
    result.reset();
    control->answerAll(); // too late
    time.advance(1min);
    EXPECT_EQ(result, std::nullopt);
    EXPECT_EQ(control->reads, 1);
}

TEST_F(BluetoothTest, ADeviceWithoutAnAddressCanNotBeConnected) {
    SetUpGranted();
    set(true, {.name = "Mouse"});
    EXPECT_EQ(result, false);
    EXPECT_TRUE(control->operations.empty());
    EXPECT_TRUE(bluetooth->busy().empty());
}

TEST_F(BluetoothTest, WhoWasNeverAskedIsAskedFirst) {
    start(BluetoothPermission::notAsked);
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::notAsked);
    const QSignalSpy changes(bluetooth.get(), &Bluetooth::permissionChanged);
    set(true, speaker);
    EXPECT_EQ(control->prompts, 1);
    EXPECT_EQ(control->operations.size(), 1u);
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::granted);
    EXPECT_EQ(changes.count(), 1);
    time.advance(1s);
    EXPECT_EQ(result, true);
}

TEST_F(BluetoothTest, ARefusalIsNoSuccessAndNoFailureOfTheDevice) {
    start(BluetoothPermission::notAsked);
    control->userSays = BluetoothPermission::denied;
    set(true, speaker);
    EXPECT_EQ(result, false);
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::denied);
    EXPECT_TRUE(control->operations.empty());
    EXPECT_TRUE(bluetooth->busy().empty());
    EXPECT_EQ(bluetooth->failure("0C:22"), std::nullopt);
    EXPECT_EQ(time.pending(), 0u);
    set(true, speaker);
    EXPECT_EQ(control->prompts, 1);
}

TEST_F(BluetoothTest, TwoClicksWhileTheUserIsAskedAreOneAttempt) {
    start(BluetoothPermission::notAsked);
    control->asksSlowly = true;
    std::vector<bool> results;
    for (int i = 0; i < 2; ++i)
        bluetooth->setConnected(true, speaker, [&](bool ok) { results.push_back(ok); });
    EXPECT_TRUE(bluetooth->busy().empty());
    control->answerAll();
    time.advance(1s);
    EXPECT_EQ(control->operations.size(), 1u);
    EXPECT_EQ(results, (std::vector<bool>{false, true}));
}

TEST_F(BluetoothTest, ThePermissionIsReadAnewWhenASurfaceAppears) {
    start(BluetoothPermission::denied);
    control->allowed = BluetoothPermission::granted; // in the system's settings
    bluetooth->surfaceAppeared();
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::granted);
}

TEST_F(BluetoothTest, TheNameOfTheMachineComesWithAReading) {
    EXPECT_EQ(bluetooth->machineName(), std::nullopt);
    control->name = "MacBook";
    bluetooth->refresh();
    EXPECT_EQ(bluetooth->machineName(), "MacBook");
}

TEST_F(BluetoothTest, AProgramWithoutBluetoothStaysSilent) {
    bluetooth = std::make_unique<Bluetooth>(BluetoothServices{}, time, settings);
    bool isDone = false;
    bluetooth->refresh([&] { isDone = true; });
    EXPECT_TRUE(isDone);
    bluetooth->surfaceAppeared();
    set(true, mouse);
    EXPECT_EQ(result, false);
    EXPECT_EQ(bluetooth->snapshot(), std::nullopt);
    EXPECT_EQ(time.pending(), 0u);
}

} // namespace
} // namespace tavero

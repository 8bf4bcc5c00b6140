#include "desktop/mac/MacBluetooth.h"

#include "platform/mac/bluetooth/ProfilerTool.h"
#include "platform/sim/SimMachine.h"
#include "time/ThreadWorker.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// The frameworks with settable answers.
struct FakeCalls final : MacBluetoothCalls {
    struct Device {
        bool isConnected = false;
        std::int64_t rawRSSI = 127;
        std::int32_t openResult = 0;
        std::int32_t closeResult = 0;
        std::function<void(std::int32_t)> completed; // who waits for the connection
    };
    class Handle final : public MacBluetoothDevice {
      public:
        explicit Handle(Device& device) : device_(device) {}
        bool isConnected() override { return device_.isConnected; }
        std::int64_t rawRSSI() override { return device_.rawRSSI; }
        std::int32_t openConnection(std::function<void(std::int32_t)> completed) override {
            device_.completed = std::move(completed);
            return device_.openResult;
        }
        std::int32_t closeConnection() override { return device_.closeResult; }

      private:
        Device& device_;
    };

    std::map<std::string, Device> devices;
    std::int64_t authorizationValue = 3;
    int centrals = 0;
    std::function<void()> updated;

    std::int64_t authorization() override { return authorizationValue; }
    void createCentral(std::function<void()> changed) override {
        ++centrals;
        updated = std::move(changed);
    }
    std::unique_ptr<MacBluetoothDevice> device(const std::string& address) override {
        const auto found = devices.find(address);
        return found == devices.end() ? nullptr : std::make_unique<Handle>(found->second);
    }
    std::optional<std::string> controllerName() override { return "MacBook"; }
};

struct FakeReport final : BluetoothReportSource {
    std::shared_ptr<int> runs = std::make_shared<int>(0);
    std::optional<std::string> report() override {
        ++*runs;
        return R"({"SPBluetoothDataType":[{"device_connected":[{"Run )" + std::to_string(*runs) +
               R"(":{}}]}]})";
    }
};

class MacBluetoothTest : public testing::Test {
  protected:
    VirtualTime time;
    std::shared_ptr<std::atomic<bool>> isCancelled = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<int> runs;
    FakeCalls* calls = nullptr;
    std::unique_ptr<MacBluetooth> bluetooth;

    void SetUp() override {
        auto report = std::make_unique<FakeReport>();
        runs = report->runs;
        auto ownCalls = std::make_unique<FakeCalls>();
        calls = ownCalls.get();
        bluetooth = std::make_unique<MacBluetooth>(std::move(report), std::move(ownCalls),
                                                   time.worker(2s), isCancelled);
    }

    std::optional<bool> connected; // what the last attempt to connect came to
    int answers = 0;
    void connect(const std::string& address) {
        connected.reset();
        bluetooth->connect(address, [this](bool ok) {
            connected = ok;
            ++answers;
        });
    }
};

TEST_F(MacBluetoothTest, TheAuthorizationTellsThePermission) {
    const auto permission = [&](std::int64_t authorization) {
        calls->authorizationValue = authorization;
        return bluetooth->permission();
    };
    EXPECT_EQ(permission(0), BluetoothPermission::notAsked);
    EXPECT_EQ(permission(1), BluetoothPermission::denied);
    EXPECT_EQ(permission(2), BluetoothPermission::denied);
    EXPECT_EQ(permission(3), BluetoothPermission::granted);
    EXPECT_EQ(permission(4), BluetoothPermission::denied);
    EXPECT_EQ(permission(-1), BluetoothPermission::denied);
}

TEST_F(MacBluetoothTest, WhoWasAskedIsNotAskedAgain) {
    for (const std::int64_t authorization : {1, 2, 3}) {
        calls->authorizationValue = authorization;
        bool isDone = false;
        bluetooth->requestPermission([&] { isDone = true; });
        EXPECT_TRUE(isDone);
    }
    EXPECT_EQ(calls->centrals, 0);
}

TEST_F(MacBluetoothTest, ARequestWaitsForTheFirstChangeOfStateOnly) {
    calls->authorizationValue = 0;
    int told = 0;
    bluetooth->requestPermission([&] { ++told; });
    bluetooth->requestPermission([&] { ++told; }); // joins the first
    EXPECT_EQ(calls->centrals, 1);
    EXPECT_EQ(told, 0);
    calls->authorizationValue = 2;
    calls->updated();
    EXPECT_EQ(told, 2);
    calls->updated();
    EXPECT_EQ(told, 2);
    EXPECT_EQ(bluetooth->permission(), BluetoothPermission::denied);
}

TEST_F(MacBluetoothTest, ASignalOfZeroOrWithALowByteOf127IsUnknown) {
    FakeCalls::Device& device = calls->devices["0C-11"];
    device.isConnected = true;
    for (const std::int64_t raw : {0, 127, -129, 383}) {
        device.rawRSSI = raw;
        EXPECT_EQ(bluetooth->rssi("0C:11"), std::nullopt) << raw;
    }
    for (const std::int64_t raw : {-48, -1, 5, -127}) {
        device.rawRSSI = raw;
        EXPECT_EQ(bluetooth->rssi("0C:11"), raw);
    }
}

TEST_F(MacBluetoothTest, OnlyAConnectedDeviceThatIsThereHasASignal) {
    calls->devices["0C-11"] = {.isConnected = false, .rawRSSI = -48};
    EXPECT_EQ(bluetooth->rssi("0C:11"), std::nullopt);
    EXPECT_EQ(bluetooth->rssi("0C:22"), std::nullopt);
    EXPECT_EQ(bluetooth->rssi(""), std::nullopt);
}

TEST_F(MacBluetoothTest, AConnectionStandsWhenItIsReported) {
    calls->devices["0C-11"] = {};
    connect("0C:11");
    EXPECT_EQ(connected, std::nullopt);
    calls->devices["0C-11"].completed(0);
    EXPECT_EQ(connected, true);
}

TEST_F(MacBluetoothTest, AConnectionThatFailsLaterIsAFailure) {
    calls->devices["0C-11"] = {};
    connect("0C:11");
    calls->devices["0C-11"].completed(-536870186);
    EXPECT_EQ(connected, false);
}

TEST_F(MacBluetoothTest, AConnectionThatFailsAtOnceIsAFailureAndIsAnsweredOnce) {
    calls->devices["0C-11"] = {.openResult = 4};
    connect("0C:11");
    EXPECT_EQ(connected, false);
    calls->devices["0C-11"].completed(0); // which it promised not to
    EXPECT_EQ(connected, false);
    EXPECT_EQ(answers, 1);
}

TEST_F(MacBluetoothTest, ADeviceThatWasConnectedAlreadyIsConnected) {
    calls->devices["0C-11"] = {.isConnected = true, .openResult = 4};
    connect("0C:11");
    EXPECT_EQ(connected, true);
}

TEST_F(MacBluetoothTest, ADeviceThatIsNotFoundCanNotBeConnectedOrDisconnected) {
    connect("0C:22");
    EXPECT_EQ(connected, false);
    bluetooth->disconnect("0C:22", [&](bool ok) { connected = ok; });
    EXPECT_EQ(connected, false);
}

TEST_F(MacBluetoothTest, SeveralConnectionsAreAnsweredInTheirOwnTime) {
    calls->devices["0C-11"] = {};
    calls->devices["0C-22"] = {};
    std::string order;
    bluetooth->connect("0C:11", [&](bool) { order += '1'; });
    bluetooth->connect("0C:22", [&](bool) { order += '2'; });
    calls->devices["0C-22"].completed(0);
    calls->devices["0C-11"].completed(0);
    EXPECT_EQ(order, "21");
}

TEST_F(MacBluetoothTest, DisconnectingSucceedsWhenTheCallReturnsZero) {
    std::optional<bool> ok;
    calls->devices["0C-11"] = {.isConnected = true};
    bluetooth->disconnect("0C:11", [&](bool succeeded) { ok = succeeded; });
    EXPECT_EQ(ok, true);
    calls->devices["0C-11"].closeResult = -1;
    bluetooth->disconnect("0C:11", [&](bool succeeded) { ok = succeeded; });
    EXPECT_EQ(ok, false);
}

TEST_F(MacBluetoothTest, TheNameOfTheMachineNeedsPermission) {
    EXPECT_EQ(bluetooth->machineName(), "MacBook");
    calls->authorizationValue = 2;
    EXPECT_EQ(bluetooth->machineName(), std::nullopt);
}

TEST_F(MacBluetoothTest, ThereIsNeverMoreThanOneReadingWaiting) {
    std::string read;
    const auto done = [&](const BluetoothControl::Snapshot& snapshot) {
        read += snapshot->connected.at(0).name.substr(4);
    };
    for (int i = 0; i < 4; ++i) bluetooth->read(done);
    EXPECT_EQ(read, "");
    time.advance(2s);
    EXPECT_EQ(read, "1");
    time.advance(2s);
    EXPECT_EQ(read, "1222"); // those that asked during the first reading
    EXPECT_EQ(*runs, 2);
    bluetooth->read(done);
    time.advance(2s);
    EXPECT_EQ(read, "12223");
}

TEST_F(MacBluetoothTest, WhenItGoesAwayTheReportIsGivenUpAndNobodyIsAnswered) {
    bluetooth->read([&](const BluetoothControl::Snapshot&) { FAIL(); });
    EXPECT_FALSE(*isCancelled);
    bluetooth.reset();
    EXPECT_TRUE(*isCancelled);
    time.advance(1min);
}

TEST(MacBluetooth, RunsOverTheSimulatedMac) {
    VirtualTime time;
    SimMachine sim(idleAfternoon(), [&] { return time.now(); });
    MacBluetooth bluetooth(sim.bluetoothReport(), sim.bluetoothCalls(), time.worker());
    BluetoothControl::Snapshot read;
    const auto readNow = [&] {
        bluetooth.read([&](const BluetoothControl::Snapshot& snapshot) { read = snapshot; });
        time.advance(1s);
        return read.value_or(BluetoothSnapshot{});
    };
    const BluetoothSnapshot before = readNow();
    ASSERT_EQ(before.connected.size(), 2u);
    const std::string earbuds = before.connected[0].address.value();
    EXPECT_LT(bluetooth.rssi(earbuds), 0);

    bluetooth.disconnect(earbuds, [](bool ok) { EXPECT_TRUE(ok); });
    EXPECT_EQ(readNow().connected.size(), 1u);
    bluetooth.connect(earbuds, [](bool ok) { EXPECT_TRUE(ok); });
    EXPECT_EQ(readNow().connected.size(), 2u);
    bluetooth.connect(earbuds, [](bool ok) { EXPECT_TRUE(ok); }); // once more
    bluetooth.connect(before.paired.at(0).address.value(), [](bool ok) { EXPECT_FALSE(ok); });
}

TEST(MacBluetooth, AToolThatHangsDoesNotHoldUpItsEndOnThisMachine) {
    const QTemporaryDir folder;
    const std::string started = folder.filePath("started").toStdString();
    const std::string tool = folder.filePath("profiler").toStdString();
    ASSERT_EQ(::mkfifo(started.c_str(), 0600), 0);
    std::ofstream(tool) << "#!/bin/sh\necho > '" << started << "'\nexec sleep 1000\n";
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);

    const auto start = std::chrono::steady_clock::now();
    {
        auto isCancelled = std::make_shared<std::atomic<bool>>(false);
        auto report = std::make_unique<ProfilerTool>(
            isCancelled, tool, ChildLimits{.bytes = 1000, .time = std::chrono::hours(1)});
        MacBluetooth bluetooth(std::move(report), std::make_unique<FakeCalls>(),
                               std::make_unique<ThreadWorker>(), isCancelled);
        bluetooth.read([](const BluetoothControl::Snapshot&) { FAIL(); });
        std::ifstream(started).get(); // waits for the tool to run
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
}

} // namespace
} // namespace tavero

#include "desktop/linux/Bluez.h"

#include "bluetooth/Bluetooth.h"
#include "desktop/linux/test/FakeBluez.h"
#include "time/VirtualTime.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>

// Runs on a bus of its own.
namespace tavero {
namespace {

using namespace std::chrono_literals;

const QString headsetPath = "/org/bluez/hci0/dev_0C_11_22_33_44_55";
const std::string headset = "0C:11:22:33:44:55";

// Serves the event loop until `done`, or for so long that the test may say it never happens.
bool waitFor(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(20s);
    while (!done() && limit.isActive()) loop.processEvents(QEventLoop::WaitForMoreEvents);
    return done();
}

class BluezTest : public testing::Test {
  protected:
    FakeBluez service;
    std::unique_ptr<BluetoothControl> bluez =
        std::make_unique<Bluez>(QDBusConnection::sessionBus());

    void SetUp() override {
        ASSERT_TRUE(service.start());
        service.addAdapter();
        service.addDevice(headsetPath, {{"Alias", "Headset"},
                                        {"Address", QString::fromStdString(headset)},
                                        {"Icon", "audio-headset"},
                                        {"Paired", true},
                                        {"Connected", false}});
    }

    BluetoothControl::Snapshot read() {
        BluetoothControl::Snapshot read;
        bool isAnswered = false;
        bluez->read([&](const BluetoothControl::Snapshot& snapshot) {
            read = snapshot;
            isAnswered = true;
        });
        EXPECT_FALSE(isAnswered); // nothing waits for the bus
        EXPECT_TRUE(waitFor([&] { return isAnswered; }));
        return read;
    }

    std::optional<bool> set(bool connected, const std::string& address = headset) {
        std::optional<bool> answer;
        const auto done = [&](bool ok) { answer = ok; };
        if (connected)
            bluez->connect(address, done);
        else
            bluez->disconnect(address, done);
        waitFor([&] { return answer.has_value(); });
        return answer;
    }
};

TEST_F(BluezTest, ADeviceConnectsShowsItsBatteryAndDisconnects) {
    const auto before = read();
    ASSERT_TRUE(before);
    EXPECT_TRUE(before->isOn);
    EXPECT_TRUE(before->connected.empty());
    EXPECT_EQ(before->paired.size(), 1u);
    EXPECT_EQ(bluez->machineName(), "workbench");

    EXPECT_EQ(set(true), true);
    EXPECT_EQ(read(), (BluetoothSnapshot{.isOn = true,
                                         .connected = {{.name = "Headset",
                                                        .kind = "Headset",
                                                        .batteries = {{"Battery", 73}},
                                                        .address = headset}}}));
    EXPECT_EQ(set(false), true);
    EXPECT_EQ(read(), before);
}

TEST_F(BluezTest, OneThatIsAsWantedAlreadyIsASuccess) {
    EXPECT_EQ(set(false), true);
    EXPECT_EQ(set(true), true);
    EXPECT_EQ(set(true), true);
}

TEST_F(BluezTest, AnErrorIsAFailure) {
    for (const char* error :
         {"org.bluez.Error.Failed", "org.bluez.Error.NotReady", "org.bluez.Error.InProgress",
          "org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.AccessDenied"}) {
        service.errors["Connect"] = service.errors["Disconnect"] = error;
        EXPECT_EQ(set(true), false) << error;
        EXPECT_EQ(set(false), false) << error;
    }
}

TEST_F(BluezTest, ADeviceThatBluezDoesNotKnowIsAFailure) {
    EXPECT_EQ(set(true, "0C:00:00:00:00:00"), false);
    EXPECT_EQ(set(false, ""), false);
}

TEST_F(BluezTest, AnAdapterThatIsOffOrGoneIsBluetoothThatIsOff) {
    service.addAdapter(false);
    const auto off = read();
    ASSERT_TRUE(off);
    EXPECT_FALSE(off->isOn);
    EXPECT_EQ(off->paired.size(), 1u);

    service.objects.clear();
    EXPECT_EQ(read(), BluetoothSnapshot{});
    EXPECT_EQ(bluez->machineName(), std::nullopt);
}

TEST_F(BluezTest, WithoutTheServiceBluetoothIsOffUntilItIsBack) {
    service.stop();
    EXPECT_EQ(read(), BluetoothSnapshot{});
    EXPECT_EQ(set(true), false);
    ASSERT_TRUE(service.start());
    // Under another path now.
    const QString path = "/org/bluez/hci7/dev_0C_11_22_33_44_55";
    service.addDevice(path,
                      service.objects.take(QDBusObjectPath(headsetPath))["org.bluez.Device1"]);
    EXPECT_EQ(set(true), true);
    EXPECT_EQ(service.calls.back(), "Connect " + path);
    EXPECT_EQ(read()->connected.size(), 1u);
}

TEST_F(BluezTest, AServiceThatRefusesOrAnswersSomethingElseTellsNothing) {
    service.errors["GetManagedObjects"] = "org.freedesktop.DBus.Error.AccessDenied";
    EXPECT_EQ(read(), std::nullopt);
    service.errors.clear();
    service.answersWithText = true;
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(set(true), false);
}

TEST_F(BluezTest, WithoutABusBluetoothIsOff) {
    bluez = std::make_unique<Bluez>(QDBusConnection("no such connection"));
    EXPECT_EQ(read(), BluetoothSnapshot{});
    EXPECT_EQ(set(true), false);
}

TEST_F(BluezTest, NoAnswerComesAfterItsEnd) {
    service.staysSilent = true;
    bool isAnswered = false;
    bluez->connect(headset, [&](bool) { isAnswered = true; });
    const auto isAsked = [&] { return service.calls.size() == 2; };
    ASSERT_TRUE(waitFor(isAsked));
    bluez.reset();
    service.answerAll();
    bluez = std::make_unique<Bluez>(QDBusConnection::sessionBus());
    ASSERT_TRUE(read()); // whatever was under way has arrived by now
    EXPECT_FALSE(isAnswered);
}

// The whole way: the state object over the bus. Waits are virtual, answers are real.
class BluetoothOverBluez : public BluezTest {
  protected:
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time;
    Bluetooth bluetooth{{.control = std::move(bluez)}, time, settings};

    // As much virtual time as it takes; far less than a device has to answer.
    bool passUntil(const std::function<bool()>& done) {
        return waitFor([&] {
            time.advance(10ms);
            return done();
        });
    }
    BluetoothDevice device() const {
        const BluetoothSnapshot& snapshot = *bluetooth.snapshot();
        return snapshot.connected.empty() ? snapshot.paired.at(0) : snapshot.connected.at(0);
    }
};

TEST_F(BluetoothOverBluez, AHeadsetConnectsAndDisconnects) {
    bluetooth.refresh();
    ASSERT_TRUE(waitFor([&] { return bluetooth.snapshot().has_value(); }));

    std::optional<bool> ok;
    const auto done = [&](bool succeeded) { ok = succeeded; };
    // The settling takes a second of virtual time, and nothing else wakes the loop meanwhile.
    QTimer ticks;
    ticks.start(5ms);
    bluetooth.setConnected(true, device(), done);
    EXPECT_EQ(bluetooth.busy(), std::set{headset});
    ASSERT_TRUE(passUntil([&] { return ok.has_value(); }));
    EXPECT_EQ(ok, true);
    EXPECT_TRUE(bluetooth.busy().empty());
    EXPECT_EQ(device().lowestBattery(), (BluetoothDevice::Battery{"Battery", 73}));

    ok.reset();
    bluetooth.setConnected(false, device(), done);
    ASSERT_TRUE(passUntil([&] { return ok.has_value(); }));
    EXPECT_EQ(ok, true);
    EXPECT_TRUE(bluetooth.snapshot()->connected.empty());

    ok.reset();
    service.errors["Connect"] = "org.bluez.Error.Failed";
    bluetooth.setConnected(true, device(), done);
    ASSERT_TRUE(passUntil([&] { return ok.has_value(); }));
    EXPECT_EQ(ok, false);
    EXPECT_EQ(bluetooth.failure(headset), BluetoothFailure::connect);
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#pragma once

#include "bluetooth/BluetoothReader.h"
#include "desktop/BluetoothControl.h"
#include "platform/BluetoothReportSource.h"
#include "platform/mac/bluetooth/MacBluetoothCalls.h"
#include "time/Worker.h"

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Bluetooth on a Mac: the report on a worker, since a tool writes it and takes its time; the rest
// by the calls of its frameworks.
class MacBluetooth final : public BluetoothControl {
  public:
    // `isCancelled`, if there is one, becomes true as this object goes away, so that the report
    // under way can be given up.
    MacBluetooth(std::unique_ptr<BluetoothReportSource> report,
                 std::unique_ptr<MacBluetoothCalls> calls, std::unique_ptr<Worker> worker,
                 std::shared_ptr<std::atomic<bool>> isCancelled = {});
    ~MacBluetooth() override;

    void read(std::function<void(Snapshot)> done) override;
    BluetoothPermission permission() override;
    void requestPermission(std::function<void()> done) override;
    std::optional<std::int64_t> rssi(const std::string& address) override;
    void connect(const std::string& address, std::function<void(bool)> done) override;
    void disconnect(const std::string& address, std::function<void(bool)> done) override;
    std::optional<std::string> machineName() override;

  private:
    struct Opening {
        std::shared_ptr<MacBluetoothDevice> device;
        std::function<void(bool)> done;
    };

    void startReading();
    void finish(std::list<Opening>::iterator opening, std::int32_t status);

    std::unique_ptr<MacBluetoothCalls> calls_;
    std::list<Opening> openings_; // those without an answer
    std::vector<std::function<void()>> askers_;
    std::vector<std::function<void(Snapshot)>> readers_; // of the reading after the current one
    bool isReading_ = false;
    std::shared_ptr<std::atomic<bool>> isCancelled_;
    std::shared_ptr<BluetoothReader> reader_; // on the worker only
    std::unique_ptr<Worker> worker_;          // ends first
};

} // namespace tavero

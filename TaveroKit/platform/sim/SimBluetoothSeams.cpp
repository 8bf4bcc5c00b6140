#include "platform/sim/SimBluetoothSeams.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr std::int32_t notFound = -536870160; // kIOReturnNotFound
constexpr std::int32_t timedOut = -536870186; // kIOReturnTimeout
constexpr std::int32_t busy = -536870187;     // kIOReturnBusy

class SimReport final : public BluetoothReportSource {
  public:
    explicit SimReport(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::optional<std::string> report() override {
        return timeline_->read([](const SimState& state) -> std::optional<std::string> {
            if (!state.bluetooth.hasTool) return std::nullopt;
            return state.bluetooth.report();
        });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

// Null if there is none of this address, with "-" between its bytes.
SimBluetoothDevice* find(SimState& state, std::string address) {
    std::replace(address.begin(), address.end(), '-', ':');
    std::vector<SimBluetoothDevice>& devices = state.bluetooth.devices;
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [&](const auto& device) { return device.address == address; });
    return found == devices.end() ? nullptr : &*found;
}

class SimDevice final : public MacBluetoothDevice {
  public:
    SimDevice(std::shared_ptr<SimTimeline> timeline, std::string address)
        : timeline_(std::move(timeline)), address_(std::move(address)) {}

    bool isConnected() override {
        return ask(false, [](const SimBluetoothDevice& device) { return device.isConnected; });
    }
    std::int64_t rawRSSI() override {
        return ask<std::int64_t>(127, [](const SimBluetoothDevice& device) {
            return device.isConnected ? device.rawRSSI : 127;
        });
    }
    std::int32_t openConnection(std::function<void(std::int32_t)> completed) override {
        if (isConnected()) return busy;
        completed(ask(notFound, [](SimBluetoothDevice& device) {
            device.isConnected = device.isNearby;
            return device.isNearby ? 0 : timedOut;
        }));
        return 0;
    }
    std::int32_t closeConnection() override {
        return ask(notFound, [](SimBluetoothDevice& device) {
            device.isConnected = false;
            return 0;
        });
    }

  private:
    template <typename Value, typename Ask>
    Value ask(Value none, Ask ask) {
        return timeline_->read([&](SimState& state) -> Value {
            SimBluetoothDevice* device = find(state, address_);
            return device ? Value(ask(*device)) : none;
        });
    }

    std::shared_ptr<SimTimeline> timeline_;
    std::string address_;
};

class SimCalls final : public MacBluetoothCalls {
  public:
    explicit SimCalls(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::int64_t authorization() override {
        return timeline_->read([](const SimState& state) { return state.bluetooth.authorization; });
    }
    void createCentral(std::function<void()> updated) override {
        constexpr std::int64_t denied = 2;
        constexpr std::int64_t allowedAlways = 3;
        timeline_->read([](SimState& state) {
            SimBluetooth& bluetooth = state.bluetooth;
            return bluetooth.authorization = bluetooth.userAllows ? allowedAlways : denied;
        });
        updated();
    }
    std::unique_ptr<MacBluetoothDevice> device(const std::string& address) override {
        const bool exists =
            timeline_->read([&](SimState& state) { return find(state, address) != nullptr; });
        return exists ? std::make_unique<SimDevice>(timeline_, address) : nullptr;
    }
    std::optional<std::string> controllerName() override {
        return timeline_->read(
            [](const SimState& state) { return std::optional(state.bluetooth.controllerName); });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace

std::unique_ptr<BluetoothReportSource> simBluetoothReport(std::shared_ptr<SimTimeline> timeline) {
    return std::make_unique<SimReport>(std::move(timeline));
}

std::unique_ptr<MacBluetoothCalls> simBluetoothCalls(std::shared_ptr<SimTimeline> timeline) {
    return std::make_unique<SimCalls>(std::move(timeline));
}

} // namespace tavero

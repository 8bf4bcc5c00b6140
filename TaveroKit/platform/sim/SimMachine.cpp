#include "platform/sim/SimMachine.h"

#include "network/NetworkPath.h"
#include "network/NetworkUsageReader.h"
#include "platform/mac/MacBundles.h"
#include "platform/mac/MacCpu.h"
#include "platform/mac/MacDisk.h"
#include "platform/mac/MacMemory.h"
#include "platform/mac/MacNetwork.h"
#include "platform/mac/MacProcesses.h"
#include "platform/mac/MacSystem.h"
#include "platform/mac/hardware/MacBattery.h"
#include "platform/mac/hardware/MacGPU.h"
#include "platform/mac/hardware/SMCReader.h"
#include "platform/mac/network/MacConnections.h"
#include "platform/mac/network/MacWiFi.h"
#include "platform/mac/sound/MacAudioProcesses.h"
#include "platform/mac/sound/ProcessTap.h"
#include "platform/sim/SimAudioSeams.h"
#include "platform/sim/SimBluetoothSeams.h"
#include "platform/sim/SimConnectionSeams.h"
#include "platform/sim/SimHardwareSeams.h"
#include "platform/sim/SimKernel.h"
#include "platform/sim/SimProcessTable.h"

#include <utility>

namespace tavero {

namespace {

class SimPower : public PowerSource {
  public:
    explicit SimPower(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    bool lowPowerMode() override {
        return timeline_->read([](const SimState& state) { return state.lowPowerMode; });
    }
    bool onExternalPower() override {
        return timeline_->read([](const SimState& state) { return state.onExternalPower; });
    }
    ThermalState thermalState() override {
        return timeline_->read([](const SimState& state) { return state.thermalState; });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

class SimRegistry : public MacRegistry {
  public:
    explicit SimRegistry(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::vector<PropertyMap> services(const std::string& className) override {
        return timeline_->read(
            [&](const SimState& state) { return ofClass(state.services, className); });
    }
    std::vector<PropertyMap> children(const std::string& className) override {
        return timeline_->read(
            [&](const SimState& state) { return ofClass(state.children, className); });
    }

  private:
    using Entries = std::map<std::string, std::vector<PropertyMap>>;

    static std::vector<PropertyMap> ofClass(const Entries& entries, const std::string& className) {
        const auto found = entries.find(className);
        return found == entries.end() ? std::vector<PropertyMap>{} : found->second;
    }

    std::shared_ptr<SimTimeline> timeline_;
};

class SimVolumes : public MacVolumes {
  public:
    explicit SimVolumes(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::optional<VolumeSpace> space(const std::string& path) override {
        return timeline_->read([&](const SimState& state) {
            const auto found = state.volumeSpaces.find(path);
            return found == state.volumeSpaces.end() ? std::nullopt : std::optional(found->second);
        });
    }
    std::vector<MountedVolume> volumes() override {
        return timeline_->read([](const SimState& state) { return state.volumes; });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

class SimBundleInfo : public MacBundleInfo {
  public:
    explicit SimBundleInfo(std::shared_ptr<SimTimeline> timeline)
        : timeline_(std::move(timeline)) {}

    std::optional<PropertyMap> info(const std::string& bundlePath,
                                    std::span<const char* const> keys) override {
        return timeline_->read([&](const SimState& state) -> std::optional<PropertyMap> {
            const auto bundle = state.bundleInfo.find(bundlePath);
            if (bundle == state.bundleInfo.end()) return std::nullopt;
            PropertyMap info;
            for (const char* key : keys)
                if (const auto value = bundle->second.find(key); value != bundle->second.end())
                    info.insert(*value);
            return info;
        });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace

SimMachine::SimMachine()
    : timeline_(std::make_shared<SimTimeline>()),
      audio_(std::make_shared<SimAudioControl>(timeline_)) {}

SimMachine::SimMachine(Scenario scenario, std::function<Date()> now)
    : timeline_(std::make_shared<SimTimeline>(std::move(scenario), std::move(now))),
      audio_(std::make_shared<SimAudioControl>(timeline_)) {}

std::shared_ptr<MacKernel> SimMachine::kernel() const {
    return std::make_shared<SimKernel>(timeline_);
}

std::shared_ptr<MacRegistry> SimMachine::registry() const {
    return std::make_shared<SimRegistry>(timeline_);
}

std::shared_ptr<MacVolumes> SimMachine::volumes() const {
    return std::make_shared<SimVolumes>(timeline_);
}

std::shared_ptr<MacProcessTable> SimMachine::processTable() const {
    return std::make_shared<SimProcessTable>(timeline_);
}

std::shared_ptr<MacBundleInfo> SimMachine::bundleInfo() const {
    return std::make_shared<SimBundleInfo>(timeline_);
}

std::shared_ptr<MacController> SimMachine::controller() const { return simController(timeline_); }

std::shared_ptr<MacPowerSources> SimMachine::powerSources() const {
    return simPowerSources(timeline_);
}

std::unique_ptr<SensorSource> SimMachine::sensors() const { return simSensors(timeline_); }

std::shared_ptr<NetworkStatistics> SimMachine::networkStatistics() const {
    return simNetworkStatistics(timeline_);
}

std::unique_ptr<BluetoothReportSource> SimMachine::bluetoothReport() const {
    return simBluetoothReport(timeline_);
}

std::unique_ptr<MacBluetoothCalls> SimMachine::bluetoothCalls() const {
    return simBluetoothCalls(timeline_);
}

std::shared_ptr<AudioObjects> SimMachine::audioObjects() const { return simAudioObjects(audio_); }

std::shared_ptr<MacAudioHardware> SimMachine::audioHardware() const {
    return simAudioHardware(audio_);
}

AudioSystem SimMachine::audioSystem() const {
    const std::shared_ptr<AudioObjects> objects = audioObjects();
    return {.objects = objects,
            .processes = std::make_shared<MacAudioProcesses>(processTable(), bundleInfo(),
                                                             "/Users/ana", simOwnPid),
            .taps = std::make_shared<ProcessTaps>(audioHardware(), objects),
            .permission = simCapturePermission(audio_)};
}

Machine SimMachine::machine() const {
    const std::shared_ptr<MacKernel> macKernel = kernel();
    return {
        .cpu = std::make_unique<MacCpu>(macKernel),
        .memory = std::make_unique<MacMemory>(macKernel),
        .disk = std::make_unique<MacDisk>(registry(), volumes()),
        .network = std::make_unique<MacNetwork>(macKernel),
        .processes = std::make_unique<MacProcesses>(processTable()),
        .bundles = std::make_unique<MacBundles>(bundleInfo()),
        .power = std::make_unique<SimPower>(timeline_),
        .gpu = std::make_unique<MacGPU>(registry(), processTable()),
        .battery = std::make_unique<MacBattery>(registry(), powerSources()),
        .controller = std::make_unique<SMCReader>(controller()),
        .sensors = sensors(),
        .networkUsage =
            NetworkUsageReader::start(std::make_unique<MacConnections>(networkStatistics())),
        .wifi = std::make_unique<MacWiFi>(simWiFi(timeline_)),
        .connection = std::make_unique<NetworkPath>(simPath(timeline_)),
        .system = std::make_unique<MacSystem>(macKernel),
        .audio = audioSystem(),
    };
}

} // namespace tavero

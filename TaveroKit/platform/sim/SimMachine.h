#pragma once

#include "platform/BluetoothReportSource.h"
#include "platform/Machine.h"
#include "platform/mac/MacBundleInfo.h"
#include "platform/mac/MacKernel.h"
#include "platform/mac/MacProcessTable.h"
#include "platform/mac/MacRegistry.h"
#include "platform/mac/MacVolumes.h"
#include "platform/mac/bluetooth/MacBluetoothCalls.h"
#include "platform/mac/hardware/MacController.h"
#include "platform/mac/hardware/MacPowerSources.h"
#include "platform/mac/network/NetworkStatistics.h"
#include "platform/sim/SimAudioControl.h"
#include "platform/sim/SimTimeline.h"

#include <functional>
#include <memory>

namespace tavero {

// A small deterministic Mac. It answers the lowest calls, so the Mac's own decoders run over it.
// The machines made from it share its state and may outlive it.
class SimMachine {
  public:
    // One that stands still until a test sets something.
    SimMachine();
    // One that a scenario moves: each read tells the state of the moment that `now` gives. Asked
    // for times in order; a clock that steps back stands still.
    SimMachine(Scenario scenario, std::function<Date()> now);

    Machine machine() const;
    std::shared_ptr<MacKernel> kernel() const;
    std::shared_ptr<MacRegistry> registry() const;
    std::shared_ptr<MacVolumes> volumes() const;
    std::shared_ptr<MacProcessTable> processTable() const;
    std::shared_ptr<MacBundleInfo> bundleInfo() const;
    std::shared_ptr<MacController> controller() const;
    std::shared_ptr<MacPowerSources> powerSources() const;
    std::unique_ptr<SensorSource> sensors() const;
    std::shared_ptr<NetworkStatistics> networkStatistics() const;
    std::unique_ptr<BluetoothReportSource> bluetoothReport() const;
    std::unique_ptr<MacBluetoothCalls> bluetoothCalls() const;
    std::shared_ptr<AudioObjects> audioObjects() const;
    std::shared_ptr<MacAudioHardware> audioHardware() const;
    SimState& state() { return timeline_->now(); }

    // Ends what runs inside a bundle, as if its user had quit it. From any thread.
    void quit(const std::string& bundlePath) { timeline_->quit(bundlePath); }

    // To change what it plays, to let it play, and to hear it.
    SimAudioControl& audio() { return *audio_; }

  private:
    AudioSystem audioSystem() const;

    std::shared_ptr<SimTimeline> timeline_;
    std::shared_ptr<SimAudioControl> audio_;
};

} // namespace tavero

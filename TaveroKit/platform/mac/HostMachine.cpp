#include "platform/Machine.h"

#include "network/NetworkPath.h"
#include "network/NetworkUsageReader.h"
#include "platform/mac/Host.h"
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
#include "platform/mac/sound/HostSound.h"
#include "platform/mac/sound/MacAudioProcesses.h"
#include "platform/mac/sound/ProcessTap.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace tavero {

namespace {

std::unique_ptr<ControllerSource> smcReader() {
    std::shared_ptr<MacController> controller = hostController();
    return controller ? std::make_unique<SMCReader>(std::move(controller)) : nullptr;
}

} // namespace

Machine Machine::host() {
    const std::shared_ptr<MacKernel> kernel = hostKernel();
    return {
        .cpu = std::make_unique<MacCpu>(kernel),
        .memory = std::make_unique<MacMemory>(kernel),
        .disk = std::make_unique<MacDisk>(hostRegistry(), hostVolumes()),
        .network = std::make_unique<MacNetwork>(kernel),
        .processes = std::make_unique<MacProcesses>(hostProcesses()),
        .bundles = std::make_unique<MacBundles>(hostBundles()),
        .power = hostPower(),
        .gpu = std::make_unique<MacGPU>(hostRegistry(), hostProcesses()),
        .battery = std::make_unique<MacBattery>(hostRegistry(), hostPowerSources()),
        .controller = smcReader(),
        .sensors = hostSensors(),
        .networkUsage =
            NetworkUsageReader::start(std::make_unique<MacConnections>(hostNetworkStatistics())),
        .wifi = std::make_unique<MacWiFi>(hostWiFi()),
        .connection = std::make_unique<NetworkPath>(hostPath()),
        .system = std::make_unique<MacSystem>(kernel),
    };
}

AudioSystem hostAudio() {
    const char* home = std::getenv("HOME");
    return {
        .objects = hostAudioObjects(),
        .processes = std::make_shared<MacAudioProcesses>(hostProcesses(), hostBundles(),
                                                         home ? home : "", ::getpid()),
        .taps = std::make_shared<ProcessTaps>(hostAudioHardware(), hostAudioObjects()),
        .permission = std::make_shared<PrivacyDatabase>(hostPrivacyCalls()),
        .makeQueue = hostAudioQueue,
    };
}

} // namespace tavero

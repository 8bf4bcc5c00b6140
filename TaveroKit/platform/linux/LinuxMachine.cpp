#include "platform/linux/LinuxMachine.h"

#include "platform/linux/LinuxCpu.h"
#include "platform/linux/LinuxDisk.h"
#include "platform/linux/LinuxMemory.h"
#include "platform/linux/LinuxNetwork.h"
#include "platform/linux/LinuxPower.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/hardware/LinuxBattery.h"
#include "platform/linux/hardware/LinuxController.h"
#include "platform/linux/hardware/LinuxGPU.h"
#include "platform/linux/hardware/LinuxSensors.h"
#include "platform/linux/network/LinuxConnection.h"
#include "platform/linux/network/LinuxNetworkUsage.h"
#include "platform/linux/network/LinuxWiFi.h"
#include "platform/linux/network/SockDiagSockets.h"
#include "platform/linux/processes/HostDesktop.h"
#include "platform/linux/processes/LinuxBundles.h"
#include "platform/linux/processes/LinuxProcesses.h"
#include "platform/linux/processes/ProcessFiles.h"

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

namespace {

// How long a pass waits for what a driver may have to ask its hardware for.
constexpr std::chrono::milliseconds hostPatience{250};
constexpr std::chrono::minutes recordedPatience{10}; // a file answers

Machine linuxMachine(const std::filesystem::path& root, ProcessClocks clocks,
                     const std::shared_ptr<DesktopFolders>& desktop,
                     std::chrono::milliseconds patience) {
    Machine machine;
    machine.systemName = "Linux";
    machine.cpu = std::make_unique<LinuxCpu>(root);
    machine.memory = std::make_unique<LinuxMemory>(root);
    machine.disk = std::make_unique<LinuxDisk>(root);
    machine.network = std::make_unique<LinuxNetwork>(root);
    machine.processes = std::make_unique<LinuxProcesses>(root, desktop, std::move(clocks));
    machine.bundles = std::make_unique<LinuxBundles>(desktop);
    machine.power = std::make_unique<LinuxPower>(root);
    machine.system = std::make_unique<LinuxSystem>(root);
    machine.battery = std::make_unique<LinuxBattery>(root, patience);
    machine.controller = std::make_unique<LinuxController>(root, patience);
    machine.sensors = std::make_unique<LinuxSensors>(root, patience);
    return machine;
}

std::unique_ptr<GPUSource> graphics(const std::filesystem::path& root,
                                    std::shared_ptr<ProcessFiles> files, std::string nvidiaLibrary,
                                    std::chrono::milliseconds patience) {
    return std::make_unique<LinuxGPU>(root, std::move(files), ProcessClocks::host().now,
                                      std::move(nvidiaLibrary), patience);
}

// Null if the kernel doesn't tell of its sockets.
std::unique_ptr<NetworkUsageSource> bytesPerProcess(std::shared_ptr<ProcessFiles> files) {
    auto sockets = std::make_unique<SockDiagSockets>();
    if (!sockets->isAvailable()) return nullptr;
    return std::make_unique<LinuxNetworkUsage>(std::move(sockets),
                                               SocketOwners("/", std::move(files)));
}

} // namespace

Machine linuxMachine(const std::filesystem::path& root) {
    Machine machine = linuxMachine(root, ProcessClocks::recorded(),
                                   std::make_shared<DesktopFolders>(std::vector<std::string>{
                                       (root / "usr/share/applications").string()}),
                                   recordedPatience);
    machine.gpu = graphics(root, std::make_shared<ProcessFiles>(root), "", recordedPatience);
    return machine;
}

Machine Machine::host() {
    Machine machine = linuxMachine(
        "/", ProcessClocks::host(),
        std::make_shared<DesktopFolders>(hostApplicationFolders(), hostLocale()), hostPatience);
    const auto files = std::make_shared<ProcessFiles>("/");
    machine.gpu = graphics("/", files, "libnvidia-ml.so.1", hostPatience);
    // The kernel's own answers, which no recorded machine has.
    machine.wifi = std::make_unique<LinuxWiFi>("/", openNetlink, hostPatience);
    machine.connection = std::make_unique<LinuxConnection>("/", openNetlink, hostPatience);
    machine.networkUsage = bytesPerProcess(files);
    return machine;
}

} // namespace tavero

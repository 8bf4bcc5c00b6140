#include "platform/linux/LinuxMachine.h"

#include "platform/linux/LinuxCpu.h"
#include "platform/linux/LinuxDisk.h"
#include "platform/linux/LinuxMemory.h"
#include "platform/linux/LinuxNetwork.h"
#include "platform/linux/LinuxPower.h"
#include "platform/linux/processes/LinuxBundles.h"
#include "platform/linux/processes/LinuxProcesses.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavero {

namespace {

Machine linuxMachine(const std::filesystem::path& root, ProcessClocks clocks,
                     std::vector<std::string> applications) {
    const auto desktop = std::make_shared<DesktopFolders>(std::move(applications));
    Machine machine;
    machine.systemName = "Linux";
    machine.cpu = std::make_unique<LinuxCpu>(root);
    machine.memory = std::make_unique<LinuxMemory>(root);
    machine.disk = std::make_unique<LinuxDisk>(root);
    machine.network = std::make_unique<LinuxNetwork>(root);
    machine.processes = std::make_unique<LinuxProcesses>(root, desktop, std::move(clocks));
    machine.bundles = std::make_unique<LinuxBundles>(desktop);
    machine.power = std::make_unique<LinuxPower>(root);
    return machine;
}

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

Machine linuxMachine(const std::filesystem::path& root) {
    return linuxMachine(root, ProcessClocks::recorded(),
                        {(root / "usr/share/applications").string()});
}

Machine Machine::host() {
    return linuxMachine(
        "/", ProcessClocks::host(),
        applicationFolders(variable("HOME"), variable("XDG_DATA_HOME"), variable("XDG_DATA_DIRS")));
}

} // namespace tavero

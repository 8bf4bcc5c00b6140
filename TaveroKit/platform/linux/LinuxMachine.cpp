#include "platform/linux/LinuxMachine.h"

#include "platform/linux/LinuxCpu.h"
#include "platform/linux/LinuxDisk.h"
#include "platform/linux/LinuxMemory.h"
#include "platform/linux/LinuxNetwork.h"
#include "platform/linux/LinuxPower.h"

namespace tavero {

Machine linuxMachine(const std::filesystem::path& root) {
    Machine machine;
    machine.cpu = std::make_unique<LinuxCpu>(root);
    machine.memory = std::make_unique<LinuxMemory>(root);
    machine.disk = std::make_unique<LinuxDisk>(root);
    machine.network = std::make_unique<LinuxNetwork>(root);
    machine.power = std::make_unique<LinuxPower>(root);
    return machine;
}

Machine Machine::host() { return linuxMachine("/"); }

} // namespace tavero

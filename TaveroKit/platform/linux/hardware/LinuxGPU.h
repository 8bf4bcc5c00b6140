#pragma once

#include "platform/GPUSource.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/hardware/AmdGpu.h"
#include "platform/linux/hardware/DrmClients.h"
#include "platform/linux/hardware/IntelGpu.h"
#include "platform/linux/hardware/LinuxGPUPower.h"
#include "platform/linux/hardware/NvmlWorker.h"
#include "platform/linux/processes/ProcessFiles.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavero {

// The graphics processors of a Linux machine: those in /sys/class/drm, and those of NVIDIA's driver
// in /sys/bus/pci/drivers/nvidia.
//   device     amdgpu's own figure; NVIDIA's by its library; elsewhere the busiest engine of the
//              clients that can be read, without any the time that an Intel processor didn't sleep
//   renderer   the engine that draws, by the clients; 0 without
//   tiler      0, it has no counterpart
//   memory     what the driver tells; elsewhere what the clients hold
//   cores      NVIDIA's library tells them
// Of several processors the busiest awake one is told, of equals the one that drives the screen. A
// sleeping one is never woken (see LinuxGPUPower); if there is no other, it has nothing to do.
//
// The time of a process is what its clients of the drm drivers tell in /proc/PID/fdinfo, of one's
// own processes only unless one is root, and what NVIDIA's library tells.
class LinuxGPU : public GPUSource {
  public:
    // `clock` in nanoseconds. Without the name of a library, NVIDIA's isn't asked: a recorded
    // machine has none. A driver that has to ask its hardware is waited for up to `limit` each.
    LinuxGPU(const std::filesystem::path& root, std::shared_ptr<ProcessFiles> files,
             std::function<std::uint64_t()> clock, std::string nvidiaLibrary,
             std::chrono::milliseconds limit);

    std::optional<GPUSnapshot> gpu() override;
    std::unordered_map<std::int32_t, std::uint64_t> gpuTimes() override;
    std::uint64_t uptime() override { return clock_(); }

  private:
    using State = LinuxGPUPower::State;
    struct Card {
        Card(const std::filesystem::path& device, std::chrono::milliseconds limit);

        std::string address;            // on the PCI bus; empty elsewhere
        std::string driver;             // the kernel's
        bool drivesScreen = false;      // since the machine started
        std::vector<std::string> nodes; // "card0", "renderD128"
        LinuxGPUPower power;
        std::optional<AmdGpu> amd;
        std::optional<IntelGpu> intel;

        State state = State::asleep;     // in this round
        std::optional<GPUSnapshot> told; // likewise
        std::optional<GPUSnapshot> last; // that was ever told

        bool isNvidias() const { return driver == "nvidia"; }
        // What its clients call it.
        const std::string& clientName() const { return address.empty() ? driver : address; }
    };

    void refresh();
    void findCards();
    Card* cardOf(const std::string& node);
    void readClients(std::uint64_t now);
    void readNvidia(std::uint64_t now);
    void readCard(Card& card, std::uint64_t now);
    std::optional<GPUSnapshot> ask(Card& card, std::uint64_t now);
    std::optional<GPUSnapshot> askClients(Card& card, std::uint64_t now);

    std::shared_ptr<ProcessFiles> files_;
    std::function<std::uint64_t()> clock_;
    bool hasNvidiaLibrary_;
    std::chrono::milliseconds limit_;
    KeptDirectory drm_;
    KeptDirectory nvidia_;
    std::map<std::filesystem::path, Card> cards_; // by the folder of the device
    std::optional<std::uint64_t> readAt_;
    DrmClients clients_;
    NvmlWorker worker_;
    NvmlAnswer answer_;
    std::array<char, 8192> buffer_;
};

} // namespace tavero

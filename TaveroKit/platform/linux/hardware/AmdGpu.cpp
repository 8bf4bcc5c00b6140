#include "platform/linux/hardware/AmdGpu.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tavero {

struct AmdGpu::Reading {
    explicit Reading(const std::filesystem::path& device)
        : busy_(device / "gpu_busy_percent"), ownMemory_(device / "mem_info_vram_used"),
          systemMemory_(device / "mem_info_gtt_used") {}

    void read() {
        snapshot.reset();
        const auto percent = number(busy_);
        if (!percent) return;
        const std::uint64_t memory =
            saturatingSum(number(ownMemory_).value_or(0), number(systemMemory_).value_or(0));
        snapshot = GPUSnapshot{
            .device = static_cast<double>(std::min<std::uint64_t>(*percent, 100)) / 100.0,
            .memoryInUse = memory,
            .memoryAllocated = memory};
    }

    std::optional<GPUSnapshot> snapshot;

  private:
    std::optional<std::uint64_t> number(KeptFile& file) {
        const auto text = file.read(buffer_);
        return text ? TextCursor(*text).number() : std::nullopt;
    }

    KeptFile busy_;
    KeptFile ownMemory_;
    KeptFile systemMemory_;
    std::vector<char> buffer_;
};

AmdGpu::AmdGpu(const std::filesystem::path& device, std::chrono::milliseconds limit)
    : reading_(std::make_shared<Reading>(device)), calls_(limit) {}

std::optional<GPUSnapshot> AmdGpu::read() {
    if (!calls_.run([reading = reading_] { reading->read(); })) return std::nullopt;
    return reading_->snapshot;
}

} // namespace tavero

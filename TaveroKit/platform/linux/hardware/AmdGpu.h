#pragma once

#include "platform/linux/BoundedCalls.h"
#include "records/GPUSnapshot.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace tavero {

// What the amdgpu driver tells in the folder of its PCI device: gpu_busy_percent, and the memory in
// use of its own (mem_info_vram_used) and of the system's (mem_info_gtt_used). It counts what is
// allocated, so that both figures of memory are the same.
class AmdGpu {
  public:
    // `limit` is how long a reading may take: the driver asks the processor's firmware.
    AmdGpu(const std::filesystem::path& device, std::chrono::milliseconds limit);

    // Absent if the processor doesn't tell how busy it is, or not in time.
    std::optional<GPUSnapshot> read();

  private:
    struct Reading;

    std::shared_ptr<Reading> reading_;
    BoundedCalls calls_;
};

} // namespace tavero

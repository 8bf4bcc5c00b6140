#include "platform/linux/hardware/IntelGpu.h"

#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <utility>

namespace tavero {

IntelGpu::IntelGpu(const std::filesystem::path& card) {
    for (const char* path : {"device/tile0/gt0/gtidle/idle_residency_ms", "gt/gt0/rc6_residency_ms",
                             "power/rc6_residency_ms"})
        files_.emplace_back(card / path);
}

std::optional<double> IntelGpu::awake(std::uint64_t now) {
    const auto residency = slept();
    if (!residency) {
        previous_.reset();
        return std::nullopt;
    }
    const auto before = std::exchange(previous_, Reading{*residency, now});
    if (!before || now <= before->at || *residency == 0 || *residency < before->slept)
        return std::nullopt;
    const double elapsed = static_cast<double>(now - before->at) / 1e6;
    const double asleep = static_cast<double>(*residency - before->slept);
    return std::clamp(1 - asleep / elapsed, 0.0, 1.0);
}

std::optional<std::uint64_t> IntelGpu::slept() {
    for (KeptFile& file : files_)
        if (const auto text = file.read(buffer_)) return TextCursor(*text).number();
    return std::nullopt;
}

} // namespace tavero

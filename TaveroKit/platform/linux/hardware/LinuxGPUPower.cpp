#include "platform/linux/hardware/LinuxGPUPower.h"

#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr std::uint64_t millisecond = 1'000'000;
constexpr int idleEnough = 3;
constexpr std::uint64_t usualDelay = 5'000 * millisecond;
constexpr std::uint64_t longestDelay = 60'000 * millisecond;
constexpr std::uint64_t margin = 2'000 * millisecond;

} // namespace

LinuxGPUPower::LinuxGPUPower(std::filesystem::path device)
    : device_(std::move(device)), status_(device_ / "power/runtime_status"),
      control_(device_ / "power/control"),
      drivesScreen_(readAttribute(device_ / "boot_vga") == "1") {}

LinuxGPUPower::State LinuxGPUPower::state(std::uint64_t now) {
    const auto status = status_.read(buffer_);
    // Also while it falls asleep or wakes up for somebody else.
    if (status && (status->starts_with("suspend") || status->starts_with("resuming"))) {
        idle_ = 0;
        restsUntil_ = 0;
        return State::asleep;
    }
    return now < restsUntil_ ? State::leftAlone : State::awake;
}

void LinuxGPUPower::wasSeen(bool isIdle, std::uint64_t now) {
    idle_ = isIdle ? std::min(idle_ + 1, idleEnough) : 0;
    restsUntil_ = idle_ == idleEnough && maySleep() ? now + timeToSleep() : 0;
}

bool LinuxGPUPower::maySleep() {
    if (drivesScreen_) return false;
    const auto control = control_.read(buffer_);
    return control && control->starts_with("auto");
}

std::uint64_t LinuxGPUPower::timeToSleep() const {
    const std::string text = readAttribute(device_ / "power/autosuspend_delay_ms");
    const auto delay = TextCursor(text).number();
    if (!delay) return usualDelay + margin;
    return std::min(*delay, longestDelay / millisecond) * millisecond + margin;
}

} // namespace tavero

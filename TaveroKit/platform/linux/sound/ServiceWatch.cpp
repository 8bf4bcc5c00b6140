#include "platform/linux/sound/ServiceWatch.h"

#include <pipewire/loop.h>
#include <spa/support/system.h>

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <system_error>
#include <utility>

namespace tavero {

namespace {

constexpr long firstWait = 50'000'000; // nanoseconds; each wait is twice as long as the one before
constexpr int mostDoublings = 8;       // about 13 seconds

void arm(pw_loop* loop, spa_source* timer, long nanoseconds) {
    timespec wait{};
    wait.tv_sec = nanoseconds / 1'000'000'000;
    wait.tv_nsec = nanoseconds % 1'000'000'000;
    pw_loop_update_timer(loop, timer, &wait, nullptr, false); // no time at all disarms it
}

} // namespace

ServiceWatch::ServiceWatch(pw_loop* loop, std::filesystem::path socket,
                           std::function<void()> tryNow)
    : loop_(loop), socket_(std::move(socket)), tryNow_(std::move(tryNow)) {
    timer_ = pw_loop_add_timer(
        loop_, [](void* self, std::uint64_t) { static_cast<ServiceWatch*>(self)->tryNow_(); },
        this);
}

ServiceWatch::~ServiceWatch() {
    if (events_) pw_loop_destroy_source(loop_, events_);
    pw_loop_destroy_source(loop_, timer_);
}

void ServiceWatch::begin() {
    if (events_ || socket_.empty()) return;
    inotify_ = FileDescriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!inotify_.isOpen() || inotify_add_watch(inotify_.number(), socket_.parent_path().c_str(),
                                                IN_CREATE | IN_MOVED_TO) < 0)
        return;
    events_ = pw_loop_add_io(
        loop_, inotify_.number(), SPA_IO_IN, false,
        [](void* self, int, std::uint32_t) { static_cast<ServiceWatch*>(self)->readEvents(); },
        this);
}

void ServiceWatch::readEvents() {
    alignas(inotify_event) std::array<char, 4096> bytes;
    bool isOurs = false;
    for (;;) {
        const ssize_t count = ::read(inotify_.number(), bytes.data(), bytes.size());
        if (count <= 0) break;
        for (ssize_t at = 0; at < count;) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            if (event.len > 0 && socket_.filename() == bytes.data() + at + sizeof event)
                isOurs = true;
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    if (!isOurs) return;
    failures_ = 0;
    tryNow_();
}

void ServiceWatch::failed() {
    std::error_code ignored;
    const bool isThere = !socket_.empty() && std::filesystem::exists(socket_, ignored);
    arm(loop_, timer_, isThere ? firstWait << std::min(failures_, mostDoublings) : 0);
    ++failures_;
}

void ServiceWatch::succeeded() {
    failures_ = 0;
    arm(loop_, timer_, 0);
    if (events_) pw_loop_destroy_source(loop_, std::exchange(events_, nullptr));
    inotify_.close();
}

std::filesystem::path ServiceWatch::socketPath(std::string_view pipewireFolder,
                                               std::string_view runtimeFolder,
                                               std::string_view remote) {
    const std::filesystem::path name = remote.empty() ? "pipewire-0" : remote;
    const std::filesystem::path folder = pipewireFolder.empty() ? runtimeFolder : pipewireFolder;
    if (folder.empty() && name.is_relative()) return {};
    return folder / name; // an absolute name stands for itself
}

} // namespace tavero

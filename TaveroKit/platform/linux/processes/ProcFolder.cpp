#include "platform/linux/processes/ProcFolder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tavero {

namespace {

// "PID/NAME", ended by a zero.
class Name {
  public:
    Name(std::int32_t pid, std::string_view name) {
        char* end = std::to_chars(text_.data(), text_.data() + text_.size(), pid).ptr;
        *end++ = '/';
        const auto room = static_cast<std::size_t>(text_.data() + text_.size() - end) - 1;
        name = name.substr(0, room);
        *std::copy(name.begin(), name.end(), end) = '\0';
    }
    operator const char*() const { return text_.data(); }

  private:
    std::array<char, 64> text_;
};

int open(int folder, const char* name) { return ::openat(folder, name, O_RDONLY | O_CLOEXEC); }

} // namespace

ProcFolder::ProcFolder(std::string path) : path_(std::move(path)) { open(); }

ProcFolder::~ProcFolder() {
    if (spare_ >= 0) ::close(spare_);
}

bool ProcFolder::open() {
    if (!folder_) folder_.reset(::opendir(path_.c_str()));
    if (folder_ && spare_ < 0) spare_ = ::fcntl(dirfd(folder_.get()), F_DUPFD_CLOEXEC, 0);
    return folder_ != nullptr;
}

bool ProcFolder::list(std::vector<std::int32_t>& pids) {
    pids.clear();
    if (!open()) return false;
    ::rewinddir(folder_.get());
    while (const dirent* entry = ::readdir(folder_.get())) {
        const std::string_view name = entry->d_name;
        std::int32_t pid = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (error == std::errc() && end == name.data() + name.size() && pid >= 1)
            pids.push_back(pid);
    }
    if (!std::is_sorted(pids.begin(), pids.end())) std::sort(pids.begin(), pids.end());
    return true;
}

int ProcFolder::openFile(const char* name) {
    const int folder = dirfd(folder_.get());
    const int file = tavero::open(folder, name);
    if (file >= 0 || (errno != EMFILE && errno != ENFILE) || spare_ < 0) return file;
    ::close(std::exchange(spare_, -1));
    return tavero::open(folder, name);
}

std::optional<std::string_view> ProcFolder::read(const char* name, std::span<char> buffer) {
    if (!folder_) return std::nullopt;
    const int file = openFile(name);
    failure_ = errno;
    if (file < 0) return std::nullopt;
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        count = ::read(file, buffer.data() + length, buffer.size() - length);
        if (count > 0) length += static_cast<std::size_t>(count);
    } while (count > 0 && length < buffer.size());
    failure_ = errno;
    ::close(file);
    if (spare_ < 0) open();
    if (count < 0) return std::nullopt;
    return std::string_view(buffer.data(), length);
}

std::optional<std::string_view> ProcFolder::read(std::int32_t pid, std::string_view name,
                                                 std::span<char> buffer) {
    return read(Name(pid, name), buffer);
}

std::optional<std::string> ProcFolder::link(std::int32_t pid, std::string_view name) {
    if (!folder_) return std::nullopt;
    std::array<char, PATH_MAX> target;
    const ssize_t length =
        ::readlinkat(dirfd(folder_.get()), Name(pid, name), target.data(), target.size());
    failure_ = length < 0 ? errno : 0;
    if (length <= 0) return std::nullopt;
    return std::string(target.data(), static_cast<std::size_t>(length));
}

} // namespace tavero

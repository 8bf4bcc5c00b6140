#include "platform/linux/processes/ProcessFiles.h"

#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace tavero {

namespace {

constexpr std::size_t mostFiles = 100'000;
constexpr std::size_t mostLikely = 16;
constexpr std::size_t mostGraphics = 4096;
constexpr std::size_t shareOfRound = 8;
// Enough for "socket:[NUMBER]" and the nodes of /dev/dri.
constexpr std::size_t longestTarget = 64;

constexpr std::string_view socketPrefix = "socket:[";
constexpr std::string_view graphicsPrefix = "/dev/dri/";

// A path of /proc, ended by a zero.
class Path {
  public:
    Path(std::string_view folder, std::int32_t pid, std::string_view name) {
        add(folder);
        add(pid);
        add(name);
    }
    Path(std::string_view folder, HeldFile file) : Path(folder, file.pid, "/fd/") {
        add(file.number);
    }
    operator const char*() const { return text_.c_str(); }

  private:
    void add(std::string_view text) { text_ += text; }
    void add(std::int32_t number) {
        std::array<char, 12> digits;
        text_.append(digits.data(),
                     std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    }
    std::string text_;
};

template <typename Number>
std::optional<Number> parsed(std::string_view text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

// Empty if there is none, or a longer one than any that counts.
std::string_view linkTarget(int folder, const char* name, std::span<char> buffer) {
    const ssize_t length = ::readlinkat(folder, name, buffer.data(), buffer.size());
    if (length <= 0 || static_cast<std::size_t>(length) == buffer.size()) return {};
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::optional<std::uint64_t> socketInode(std::string_view target) {
    if (!target.starts_with(socketPrefix) || !target.ends_with(']')) return std::nullopt;
    target.remove_prefix(socketPrefix.size());
    target.remove_suffix(1);
    return parsed<std::uint64_t>(target);
}

} // namespace

ProcessFiles::ProcessFiles(const std::filesystem::path& root)
    : path_((root / "proc").string() + "/"), proc_(path_) {}

std::unordered_map<std::uint64_t, HeldFile>
ProcessFiles::holders(std::span<const std::uint64_t> sockets) {
    files_ = 0;
    found_.clear();
    wanted_ = {sockets.begin(), sockets.end()};
    isSearching_ = true;
    const std::vector<std::int32_t> likely = likely_;
    for (const std::int32_t pid : likely)
        if (!isDone()) scan(pid);
    if (!isDone()) {
        list();
        std::vector<std::int32_t> arrived;
        std::set_difference(pids_.rbegin(), pids_.rend(), previous_.rbegin(), previous_.rend(),
                            std::back_inserter(arrived), std::greater<>());
        // At the first time all are new, and the round is as good.
        if (arrived.size() < pids_.size())
            for (const std::int32_t pid : arrived)
                if (!isDone()) scan(pid);
        goRound(pids_.size());
    }
    isSearching_ = false;
    return std::exchange(found_, {});
}

void ProcessFiles::lookOn() {
    files_ = 0;
    const bool isFirst = pids_.empty();
    list();
    const std::size_t share = isFirst ? pids_.size() : pids_.size() / shareOfRound + 1;
    if (scanned_ < share) goRound(share - scanned_);
    scanned_ = 0;
}

void ProcessFiles::list() {
    std::swap(pids_, previous_);
    proc_.list(pids_);
}

// Downwards: what is new as a rule has a high pid.
void ProcessFiles::goRound(std::size_t most) {
    most = std::min(most, pids_.size());
    auto next = std::lower_bound(pids_.begin(), pids_.end(), position_);
    for (; most > 0 && !isDone() && files_ < mostFiles; --most) {
        if (next == pids_.begin()) next = pids_.end();
        position_ = *--next;
        if (!isSearching_ || !isLikely(position_)) scan(position_);
    }
}

bool ProcessFiles::isLikely(std::int32_t pid) const {
    return std::find(likely_.begin(), likely_.end(), pid) != likely_.end();
}

void ProcessFiles::scan(std::int32_t pid) {
    ++scanned_;
    const FileDescriptor folder(Path(path_, pid, "/fd"), O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen()) return;
    while (files_ < mostFiles && !isDone()) {
        const ssize_t length = ::getdents64(folder.number(), entries_.data(), entries_.size());
        if (length <= 0) return;
        scanEntries(pid, folder.number(), {entries_.data(), static_cast<std::size_t>(length)});
    }
}

void ProcessFiles::scanEntries(std::int32_t pid, int folder, std::span<const char> entries) {
    constexpr std::size_t nameAt = offsetof(dirent64, d_name);
    std::array<char, longestTarget> target;
    for (std::size_t at = 0; at + nameAt < entries.size();) {
        unsigned short length = 0;
        std::memcpy(&length, &entries[at + offsetof(dirent64, d_reclen)], sizeof length);
        const char* name = &entries[at + nameAt];
        at += length;
        const auto number = parsed<std::int32_t>(name);
        if (!number) continue;
        ++files_;
        note({pid, *number}, linkTarget(folder, name, target));
    }
}

void ProcessFiles::note(HeldFile file, std::string_view target) {
    if (const auto inode = socketInode(target)) {
        if (wanted_.erase(*inode) == 0) return;
        found_.emplace(*inode, file);
        std::erase(likely_, file.pid);
        likely_.insert(likely_.begin(), file.pid);
        if (likely_.size() > mostLikely) likely_.pop_back();
    } else if (target.starts_with(graphicsPrefix)) {
        noteGraphics(file, target.substr(graphicsPrefix.size()));
    }
}

void ProcessFiles::noteGraphics(HeldFile file, std::string_view node) {
    const auto known = std::find_if(graphics_.begin(), graphics_.end(),
                                    [&](const GraphicsFile& g) { return g.file == file; });
    if (known != graphics_.end())
        known->node = node;
    else if (graphics_.size() < mostGraphics)
        graphics_.push_back({file, std::string(node)});
}

void ProcessFiles::forget(HeldFile file) {
    std::erase_if(graphics_, [&](const GraphicsFile& g) { return g.file == file; });
}

bool ProcessFiles::isSocket(HeldFile file, std::uint64_t inode) const {
    std::array<char, longestTarget> target;
    return socketInode(linkTarget(AT_FDCWD, Path(path_, file), target)) == inode;
}

bool ProcessFiles::isReadable(std::int32_t pid) const {
    return FileDescriptor(Path(path_, pid, "/fd"), O_RDONLY | O_DIRECTORY).isOpen();
}

std::optional<std::string_view> ProcessFiles::info(HeldFile file, std::span<char> buffer) {
    return proc_.read(file.pid, "fdinfo/" + std::to_string(file.number), buffer);
}

} // namespace tavero

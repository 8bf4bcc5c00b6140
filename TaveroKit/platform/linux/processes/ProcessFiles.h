#pragma once

#include "platform/linux/processes/ProcFolder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tavero {

// A file that a process has open: /proc/PID/fd/NUMBER.
struct HeldFile {
    std::int32_t pid = 0;
    std::int32_t number = 0;

    bool operator==(const HeldFile&) const = default;
};

// A file of a graphics device.
struct GraphicsFile {
    HeldFile file;
    std::string node; // its name in /dev/dri: "renderD128"

    bool operator==(const GraphicsFile&) const = default;
};

// What processes have open, by the links in /proc/PID/fd. One walk serves both who counts sockets
// and who counts graphics: whatever it passes that is of either kind is kept. Another user's files
// are closed to all but root; such processes are as if they held nothing.
//
// A walk costs a system call a file, so it goes round the processes and stops when it found what it
// is for. It takes at most 100,000 files at a time and goes on from there the next time.
class ProcessFiles {
  public:
    explicit ProcessFiles(const std::filesystem::path& root);

    // Who holds these sockets, by inode. Those that held some before are looked at first, then new
    // processes, then all. A socket that nobody is found to hold is left out.
    std::unordered_map<std::uint64_t, HeldFile> holders(std::span<const std::uint64_t> sockets);

    // True as long as this very file is that socket. One system call.
    bool isSocket(HeldFile file, std::uint64_t inode) const;

    // False if the system refuses to show what the process has open.
    bool isReadable(std::int32_t pid) const;

    // Looks through an eighth of the processes, less what was looked through since the last time;
    // through all at first.
    void lookOn();

    // The files of graphics devices that were come across and not forgotten since.
    const std::vector<GraphicsFile>& graphics() const { return graphics_; }
    void forget(HeldFile file);

    // /proc/PID/fdinfo/NUMBER, in `buffer`. Absent if the file is closed.
    std::optional<std::string_view> info(HeldFile file, std::span<char> buffer);

  private:
    void list();
    void goRound(std::size_t most);
    void scan(std::int32_t pid);
    void scanEntries(std::int32_t pid, int folder, std::span<const char> entries);
    void note(HeldFile file, std::string_view target);
    void noteGraphics(HeldFile file, std::string_view node);
    bool isLikely(std::int32_t pid) const;
    bool isDone() const { return isSearching_ && wanted_.empty(); }

    std::string path_;
    ProcFolder proc_;
    std::vector<std::int32_t> pids_; // ascending
    std::vector<std::int32_t> previous_;
    std::int32_t position_ = 0; // the round goes downwards and stands above this pid
    std::size_t scanned_ = 0;   // processes since lookOn()
    std::size_t files_ = 0;     // in this walk

    bool isSearching_ = false;
    std::unordered_set<std::uint64_t> wanted_;
    std::unordered_map<std::uint64_t, HeldFile> found_;
    std::vector<std::int32_t> likely_; // who held sockets before, the latest first
    std::vector<GraphicsFile> graphics_;
    std::array<char, 16384> entries_;
};

} // namespace tavero

#pragma once

#include <cerrno>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>

namespace tavero {

// The files of a /proc tree. Keeps two descriptors: the folder itself, against which everything is
// opened, and a spare one, given up for a moment when the program has no other left.
class ProcFolder {
  public:
    explicit ProcFolder(std::string path);
    ~ProcFolder();
    ProcFolder(const ProcFolder&) = delete;
    ProcFolder& operator=(const ProcFolder&) = delete;

    // The pids, ascending. False if the folder can't be read.
    bool list(std::vector<std::int32_t>& pids);

    // What a file holds, cut to the buffer. Absent if it can't be read.
    std::optional<std::string_view> read(const char* name, std::span<char> buffer);
    std::optional<std::string_view> read(std::int32_t pid, std::string_view name,
                                         std::span<char> buffer);

    // Where a link leads. Absent if it can't be read.
    std::optional<std::string> link(std::int32_t pid, std::string_view name);
    // Whether what failed last did so because it is not allowed, and not because nothing is there
    // or no descriptor is left.
    bool wasRefused() const { return failure_ == EACCES || failure_ == EPERM; }

  private:
    struct Close {
        void operator()(DIR* folder) const { closedir(folder); }
    };

    bool open();
    int openFile(const char* name);

    std::string path_;
    std::unique_ptr<DIR, Close> folder_;
    int spare_ = -1;
    int failure_ = 0;
};

} // namespace tavero

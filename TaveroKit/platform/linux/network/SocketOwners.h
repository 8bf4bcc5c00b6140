#pragma once

#include "platform/linux/processes/ProcessFiles.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace tavero {

// Which process a socket belongs to: whoever has it open, else whom its control group gives away.
class SocketOwners {
  public:
    SocketOwners(const std::filesystem::path& root, std::shared_ptr<ProcessFiles> files);

    // Who has these sockets open, by inode. What isn't found is left out.
    std::unordered_map<std::uint64_t, HeldFile> holders(std::span<const std::uint64_t> sockets) {
        return files_->holders(sockets);
    }
    bool isHeld(HeldFile file, std::uint64_t inode) const { return files_->isSocket(file, inode); }

    // The process of a control group whose open files aren't shown, so that one may hold a socket
    // without being found. Of a service it is the first, since all are the same program's; of
    // anything else the only one. Absent where it could as well be another.
    std::optional<std::int32_t> ofGroup(std::uint64_t id);

    // Lets the groups be asked for anew. What they were found to be is good for one read.
    void forgetGroups() {
        pids_.clear();
        isListed_ = false;
    }

  private:
    std::optional<std::filesystem::path> folderOf(std::uint64_t id);
    void listGroups();
    std::optional<std::int32_t> hiddenProcess(const std::filesystem::path& group) const;

    std::shared_ptr<ProcessFiles> files_;
    std::filesystem::path groups_;
    bool isListed_ = false;                                            // in this read
    std::unordered_map<std::uint64_t, std::filesystem::path> folders_; // by inode
    std::unordered_set<std::uint64_t> unknown_; // without a folder; no group gets their ids again
    std::unordered_map<std::uint64_t, std::optional<std::int32_t>> pids_;
};

} // namespace tavero

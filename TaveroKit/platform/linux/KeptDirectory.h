#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tavero {

// A folder of kernel objects whose entries come and go: /sys/block, /sys/class/net. sysfs tells
// nobody of a change, so the folder is listed again each time, from a descriptor opened once; that
// costs about as much as reading two attributes.
class KeptDirectory {
  public:
    explicit KeptDirectory(std::filesystem::path path);

    // True if an entry came, went or was replaced by another of the same name since the previous
    // call; true on the first call. A folder that can't be listed is an empty one.
    bool changed();

    // The entries as of the last call of changed(), sorted.
    std::vector<std::string> names() const;

    // False if the last call of changed() could not list the folder.
    bool isReadable() const { return folder_.isOpen(); }

    const std::filesystem::path& path() const { return path_; }

  private:
    void list();

    std::filesystem::path path_;
    FileDescriptor folder_;
    bool isListed_ = false;
    // The listing as the kernel writes it. The inode numbers in it tell replaced entries apart.
    std::vector<char> listing_;
    std::vector<char> previous_;
};

} // namespace tavero

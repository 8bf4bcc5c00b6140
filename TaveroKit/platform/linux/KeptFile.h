#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// A kernel file that is read again and again. It is opened once; a steady read is one system call
// and allocates nothing.
class KeptFile {
  public:
    explicit KeptFile(std::filesystem::path path);

    // The whole text, in `buffer`, which grows as needed and may serve many files in turn. Absent
    // if it can't be read: the file is then opened anew the next time, since it may be another one.
    std::optional<std::string_view> read(std::vector<char>& buffer);

  private:
    std::filesystem::path path_;
    FileDescriptor file_;
};

// The text of a file that is read once in a while. Absent if it can't be read.
std::optional<std::string> readFile(const std::filesystem::path& path);

// The same without the line's end: a sysfs attribute. Empty if it can't be read.
std::string readAttribute(const std::filesystem::path& path);

} // namespace tavero

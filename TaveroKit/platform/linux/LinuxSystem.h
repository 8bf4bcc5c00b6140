#pragma once

#include "platform/SystemSource.h"

#include <filesystem>
#include <string_view>

namespace tavero {

// The boot time by /proc/stat.
class LinuxSystem : public SystemSource {
  public:
    explicit LinuxSystem(const std::filesystem::path& root);

    std::optional<Date> bootTime() override;

  private:
    std::filesystem::path stat_;
};

// The "btime" line of /proc/stat. Absent without it.
std::optional<Date> parseBootTime(std::string_view text);

} // namespace tavero

#pragma once

#include "platform/linux/processes/DesktopEntry.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tavero {

// The apps that are installed on a desktop, to be found by what a process tells of itself. A
// pointer stays valid as long as this object.
class DesktopApps {
  public:
    // Of two entries with one id the first counts.
    explicit DesktopApps(std::vector<DesktopEntry> entries = {});

    const DesktopEntry* withId(const std::string& id) const;
    const DesktopEntry* withFile(const std::string& file) const;
    const DesktopEntry* fromSnap(const std::string& name) const;
    // Whose program this is, or lies in the folder of; failing that, whose program has this name.
    // Apps that run in a terminal aren't found so: who types a command runs a tool.
    const DesktopEntry* withProgram(std::string_view path) const;

  private:
    using Places = std::unordered_map<std::string, std::size_t>;

    void addProgram(const std::string& program, std::size_t place);
    const DesktopEntry* find(const Places& places, const std::string& key) const;

    std::vector<DesktopEntry> entries_;
    Places ids_, files_, snaps_, programs_, folders_, names_;
};

} // namespace tavero

#pragma once

#include "platform/linux/processes/DesktopApps.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// Where desktop entries are by convention, the user's own first. An empty argument is a variable
// that isn't set.
//   home      the user's folder
//   dataHome  XDG_DATA_HOME
//   dataDirs  XDG_DATA_DIRS, separated by colons
std::vector<std::string> applicationFolders(std::string_view home, std::string_view dataHome,
                                            std::string_view dataDirs);

// The locale that a program's words are in, by the variables that tell it: LC_ALL, LC_MESSAGES and
// LANG. An empty argument is a variable that isn't set.
std::string_view localeOfMessages(std::string_view all, std::string_view messages,
                                  std::string_view lang);

// The desktop entries of a machine, read again when a folder of theirs changes. For one thread.
class DesktopFolders {
  public:
    // `folders` hold entries, and the first with an id counts; `locale` is that of the names;
    // `programFolders` are searched for programs that an entry names without a path.
    explicit DesktopFolders(std::vector<std::string> folders, std::string_view locale = "",
                            std::vector<std::string> programFolders = {
                                "/usr/local/bin", "/usr/bin", "/bin", "/usr/local/games",
                                "/usr/games", "/usr/sbin", "/snap/bin"});

    // Looks whether a folder changed. Costs a system call a folder.
    void refresh();
    const DesktopApps& apps() const { return apps_; }

    // A name in the icon theme, or a path. Absent if the entry has none.
    std::optional<std::string> icon(const std::string& file) const;

  private:
    // A folder or one in it, and when it changed, 0 if it isn't there.
    struct Watched {
        std::string path;
        std::int64_t changed = 0;
    };

    bool isChanged() const;
    void read();
    void readFolder(const std::string& path, const std::string& idPrefix, int depth,
                    std::vector<DesktopEntry>& entries);
    void resolve(DesktopEntry& entry) const;

    std::vector<std::string> folders_;
    std::vector<std::string> locales_; // the likeliest first
    std::vector<std::string> programFolders_;
    std::vector<Watched> watched_;
    DesktopApps apps_;
};

} // namespace tavero

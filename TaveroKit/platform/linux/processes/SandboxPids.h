#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace tavero {

// The pid on this machine of a Flatpak app's process that knows itself by `pidInside`, the pid in
// its sandbox. Of several sandboxes of one app each may have such a process, and then it is any of
// them, since all are the same app's. Absent if there is none. `root` holds proc/, and all of it is
// looked through, which takes some milliseconds: the answer is worth keeping.
std::optional<std::int32_t> hostPid(const std::filesystem::path& root, std::string_view flatpakId,
                                    std::int32_t pidInside);

} // namespace tavero

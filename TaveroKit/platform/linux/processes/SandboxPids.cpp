#include "platform/linux/processes/SandboxPids.h"

#include "platform/linux/processes/ProcFiles.h"
#include "platform/linux/processes/ProcFolder.h"
#include "platform/linux/processes/UnitNames.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace tavero {

namespace {

constexpr std::size_t mostProcesses = 50'000;
constexpr std::size_t mostText = 16 << 10; // a user may be in hundreds of groups

enum class Sandbox { another, ofUnit, its };

// Where the sandbox itself is closed to us, the unit that it was started in tells the app.
Sandbox sandboxOf(ProcFolder& proc, std::int32_t pid, std::string_view flatpakId,
                  std::span<char> buffer) {
    if (const auto info = proc.read(pid, "root/.flatpak-info", buffer))
        return parseFlatpakId(*info) == flatpakId ? Sandbox::its : Sandbox::another;
    if (!proc.wasRefused()) return Sandbox::another;
    const auto cgroup = proc.read(pid, "cgroup", buffer);
    const bool isOfUnit = cgroup && flatpakOfControlGroup(parseCgroup(*cgroup)) == flatpakId;
    return isOfUnit ? Sandbox::ofUnit : Sandbox::another;
}

} // namespace

std::optional<std::int32_t> hostPid(const std::filesystem::path& root, std::string_view flatpakId,
                                    std::int32_t pidInside) {
    if (flatpakId.empty() || pidInside < 1) return std::nullopt;
    ProcFolder proc(root / "proc");
    std::vector<std::int32_t> pids;
    if (!proc.list(pids)) return std::nullopt;
    if (pids.size() > mostProcesses) pids.resize(mostProcesses);

    std::array<char, mostText> buffer;
    std::optional<std::int32_t> ofUnit;
    for (const std::int32_t pid : pids) {
        const auto status = proc.read(pid, "status", buffer);
        if (!status || parseInnermostPid(*status) != pidInside) continue;
        const Sandbox sandbox = sandboxOf(proc, pid, flatpakId, buffer);
        if (sandbox == Sandbox::its) return pid;
        if (sandbox == Sandbox::ofUnit && !ofUnit) ofUnit = pid;
    }
    return ofUnit;
}

} // namespace tavero

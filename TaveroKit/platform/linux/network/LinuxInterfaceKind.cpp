#include "platform/linux/network/LinuxInterfaceKind.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tavero {

namespace fs = std::filesystem;

namespace {

constexpr int deepestStack = 8;

// In the order of preference, which is also that of the kinds.
static_assert(ConnectionKind::wifi < ConnectionKind::wired &&
              ConnectionKind::wired < ConnectionKind::cellular &&
              ConnectionKind::cellular < ConnectionKind::other);

// "wlan", "wwan", "bridge"; empty for a plain one.
std::string deviceType(const fs::path& interface) {
    const std::string uevent = readFile(interface / "uevent").value_or("");
    for (TextCursor text(uevent); !text.atEnd(); text.nextLine())
        if (text.skip("DEVTYPE=")) return std::string(text.word());
    return {};
}

bool hasEntry(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

std::vector<fs::path> entries(const fs::path& folder) {
    std::vector<fs::path> result;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        result.push_back(entry->path());
    return result;
}

ConnectionKind kindOf(const fs::path& interface, int depth) {
    constexpr std::string_view ethernet = "1"; // ARPHRD_ETHER
    constexpr std::string_view lowerMark = "lower_";

    if (isWiFi(interface)) return ConnectionKind::wifi;
    if (deviceType(interface) == "wwan") return ConnectionKind::cellular;
    if (hasEntry(interface / "device"))
        return readAttribute(interface / "type") == ethernet ? ConnectionKind::wired
                                                             : ConnectionKind::other;
    ConnectionKind best = ConnectionKind::other;
    if (depth == deepestStack) return best;
    for (const fs::path& lower : entries(interface))
        if (lower.filename().native().starts_with(lowerMark) &&
            readAttribute(lower / "operstate") != "down")
            best = std::min(best, kindOf(lower, depth + 1));
    return best;
}

ConnectionKind bestKind(const std::vector<std::uint32_t>& numbers, const fs::path& net) {
    ConnectionKind best = ConnectionKind::other;
    for (const fs::path& interface : entries(net)) {
        const std::string text = readAttribute(interface / "ifindex");
        const std::optional<std::uint64_t> number = TextCursor(text).number();
        if (number && std::find(numbers.begin(), numbers.end(), *number) != numbers.end())
            best = std::min(best, interfaceKind(interface));
    }
    return best;
}

} // namespace

bool isWiFi(const fs::path& interface) {
    return deviceType(interface) == "wlan" || hasEntry(interface / "phy80211") ||
           hasEntry(interface / "wireless");
}

ConnectionKind interfaceKind(const fs::path& interface) { return kindOf(interface, 0); }

ConnectionKind connectionKind(const WaysOut& ways, const fs::path& net) {
    if (ways.defaults.empty()) return ConnectionKind::offline;
    const ConnectionKind kind = bestKind(ways.defaults, net);
    return kind == ConnectionKind::other ? bestKind(ways.gateways, net) : kind;
}

} // namespace tavero

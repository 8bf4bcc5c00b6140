#include "platform/linux/processes/ProcFiles.h"

#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace tavero {

namespace {

// PF_KTHREAD of the kernel's flags of a task.
constexpr std::uint64_t kernelThreadFlag = 0x00200000;

// Takes what is before the next `separator`, or all there is, off `text`.
std::string_view take(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return piece;
}

// 0 for what no kernel would say.
template <typename Number>
Number narrowed(std::uint64_t value) {
    return value <= static_cast<std::uint64_t>(std::numeric_limits<Number>::max())
               ? static_cast<Number>(value)
               : 0;
}

void skipWords(TextCursor& cursor, int count) {
    while (count-- > 0) cursor.word();
}

// The number after a label at the start of a line.
std::optional<std::uint64_t> labelled(std::string_view text, std::string_view label) {
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
        if (cursor.skip(label)) return cursor.number();
    return std::nullopt;
}

} // namespace

std::optional<StatLine> parseStat(std::string_view text) {
    // The name may hold spaces, brackets and line ends, so only the last bracket ends it.
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == text.npos || close == text.npos || close < open || close + 2 >= text.size())
        return std::nullopt;
    StatLine line{.comm = text.substr(open + 1, close - open - 1), .state = text[close + 2]};

    TextCursor cursor(text.substr(close + 2));
    skipWords(cursor, 1); // the state; the fields are those of proc(5)
    const auto parent = cursor.number();
    skipWords(cursor, 4);
    const auto flags = cursor.number(); // field 9
    skipWords(cursor, 4);
    const auto user = cursor.number(); // field 14
    const auto system = cursor.number();
    skipWords(cursor, 4);
    const auto threads = cursor.number(); // field 20
    skipWords(cursor, 1);
    const auto start = cursor.number(); // field 22
    skipWords(cursor, 1);
    const auto resident = cursor.number(); // field 24
    if (!parent || !flags || !user || !system || !threads || !start || !resident)
        return std::nullopt;
    line.parent = narrowed<std::int32_t>(*parent);
    line.isKernelThread = (*flags & kernelThreadFlag) != 0;
    line.cpuTicks = saturatingSum(*user, *system);
    line.threads = narrowed<std::int64_t>(*threads);
    line.start = *start;
    line.resident = *resident;
    return line;
}

std::optional<std::uint64_t> parseOwnPages(std::string_view text) {
    TextCursor cursor(text);
    skipWords(cursor, 1);
    const auto resident = cursor.number();
    const auto shared = cursor.number();
    if (!resident || !shared) return std::nullopt;
    return *resident > *shared ? *resident - *shared : 0;
}

std::optional<DiskBytes> parseDiskBytes(std::string_view text) {
    const auto read = labelled(text, "read_bytes: ");
    const auto written = labelled(text, "write_bytes: ");
    if (!read || !written) return std::nullopt;
    return DiskBytes{*read, *written};
}

std::optional<std::uint64_t> parseForks(std::string_view text) {
    return labelled(text, "processes ");
}

std::string_view parseCgroup(std::string_view text) {
    std::string_view unified, named;
    while (!text.empty()) {
        std::string_view line = take(text, '\n');
        const std::string_view hierarchy = take(line, ':');
        const std::string_view controllers = take(line, ':');
        if (hierarchy == "0" && controllers.empty()) unified = line;
        if (controllers == "name=systemd") named = line;
    }
    // Where both trees are mounted, the old one is the one in use.
    return named.size() > unified.size() ? named : unified;
}

std::string_view argument(std::string_view commandLine, std::size_t index) {
    while (index-- > 0) take(commandLine, '\0');
    return take(commandLine, '\0');
}

std::string_view scriptOf(std::string_view commandLine) {
    take(commandLine, '\0');
    while (!commandLine.empty())
        if (const std::string_view word = take(commandLine, '\0'); !word.starts_with('-'))
            return word;
    return {};
}

std::optional<std::string_view> variable(std::string_view environment, std::string_view name) {
    while (!environment.empty()) {
        std::string_view value = take(environment, '\0');
        if (take(value, '=') == name) return value;
    }
    return std::nullopt;
}

std::optional<std::int32_t> parseInnermostPid(std::string_view text) {
    TextCursor cursor(text);
    while (!cursor.skip("NSpid:")) {
        if (cursor.atEnd()) return std::nullopt;
        cursor.nextLine();
    }
    std::optional<std::uint64_t> innermost;
    while (const auto pid = cursor.number()) innermost = pid;
    const auto pid = narrowed<std::int32_t>(innermost.value_or(0));
    return pid >= 1 ? std::optional(pid) : std::nullopt;
}

std::string_view parseFlatpakId(std::string_view text) {
    constexpr std::string_view key = "\nname=";
    const std::size_t start = text.find(key);
    if (!text.starts_with("[Application]") || start == text.npos) return {};
    text.remove_prefix(start + key.size());
    return text.substr(0, text.find('\n'));
}

} // namespace tavero

#include "platform/linux/Meminfo.h"

#include "platform/linux/TextCursor.h"

namespace tavero {

namespace {

struct Line {
    std::string_view name;
    std::uint64_t Meminfo::*value;
};
constexpr Line lines[] = {
    {"MemTotal", &Meminfo::total},       {"MemFree", &Meminfo::free},
    {"Buffers", &Meminfo::buffers},      {"Cached", &Meminfo::cached},
    {"SwapTotal", &Meminfo::swapTotal},  {"SwapFree", &Meminfo::swapFree},
    {"Zswap", &Meminfo::compressedSwap}, {"AnonPages", &Meminfo::anonymous},
    {"Shmem", &Meminfo::shared},         {"SReclaimable", &Meminfo::reclaimableSlab},
};

void parseLine(TextCursor& cursor, Meminfo& memory) {
    const std::string_view name = cursor.upTo(':');
    if (name == "MemAvailable") memory.available = cursor.number();
    for (const Line& line : lines)
        if (name == line.name) memory.*line.value = cursor.number().value_or(0);
}

} // namespace

std::optional<Meminfo> parseMeminfo(std::string_view text) {
    Meminfo memory;
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine()) parseLine(cursor, memory);
    if (memory.total == 0) return std::nullopt;
    return memory;
}

std::optional<MemoryStall> parseMemoryStall(std::string_view text) {
    std::optional<double> some;
    std::optional<double> full;
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine()) {
        if (cursor.skip("some avg10=")) some = cursor.decimal();
        if (cursor.skip("full avg10=")) full = cursor.decimal();
    }
    if (!some) return std::nullopt;
    return MemoryStall{.some = *some, .full = full.value_or(0)};
}

std::optional<std::uint64_t> parseZramMemory(std::string_view text) {
    TextCursor cursor(text);
    cursor.number(); // what was stored
    cursor.number(); // that compressed
    return cursor.number();
}

} // namespace tavero

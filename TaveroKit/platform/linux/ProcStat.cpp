#include "platform/linux/ProcStat.h"

#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

namespace tavero {

namespace {

constexpr std::uint64_t mostCpus = 8192; // what a kernel can be built for

std::optional<CpuTime> parseCpu(TextCursor& line) {
    const auto number = line.number();
    const auto user = line.number();
    const auto nice = line.number();
    const auto system = line.number();
    const auto idle = line.number();
    if (!idle || *number >= mostCpus) return std::nullopt;
    const std::uint64_t iowait = line.number().value_or(0);
    const std::uint64_t irq = line.number().value_or(0);
    const std::uint64_t softirq = line.number().value_or(0);
    return CpuTime{.number = static_cast<std::uint32_t>(*number),
                   .user = *user,
                   .nice = *nice,
                   .system = saturatingSum(saturatingSum(*system, irq), softirq),
                   .idle = saturatingSum(*idle, iowait)};
}

} // namespace

std::vector<CpuTime> parseProcStat(std::string_view text) {
    std::vector<CpuTime> cpus;
    // The CPUs come first; thousands of interrupts may follow.
    for (TextCursor cursor(text); cursor.skip("cpu"); cursor.nextLine()) {
        if (cursor.rest().starts_with(' ')) continue; // the sum of all
        if (const auto cpu = parseCpu(cursor)) cpus.push_back(*cpu);
    }
    return cpus;
}

std::optional<LoadAverage> parseLoadAverage(std::string_view text) {
    TextCursor cursor(text);
    const auto one = cursor.decimal();
    const auto five = cursor.decimal();
    const auto fifteen = cursor.decimal();
    if (!one || !five || !fifteen) return std::nullopt;
    return LoadAverage{.one = *one, .five = *five, .fifteen = *fifteen};
}

std::int64_t parseCpuList(std::string_view text) {
    std::int64_t count = 0;
    TextCursor cursor(text);
    do {
        const auto first = cursor.number();
        const auto last = cursor.skip("-") ? cursor.number() : first;
        if (!first || !last || *last < *first || *last >= mostCpus) break;
        count += static_cast<std::int64_t>(*last - *first + 1);
    } while (cursor.skip(","));
    return count;
}

} // namespace tavero

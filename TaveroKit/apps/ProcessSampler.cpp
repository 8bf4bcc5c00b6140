#include "apps/ProcessSampler.h"

#include "apps/AppIdentities.h"
#include "apps/Text.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

std::uint64_t nanoseconds(std::uint64_t ticks, Timebase timebase) {
    return timebase.denom == 0 ? 0 : saturatingProduct(ticks, timebase.numer) / timebase.denom;
}

// The last component of a path, or all of it if it has none.
std::string executableName(std::string_view path) {
    const std::size_t end = path.find_last_not_of('/') + 1;
    if (end == 0) return std::string(path);
    const std::size_t start = path.rfind('/', end - 1) + 1;
    return std::string(path.substr(start, end - start));
}

// False if the process has no path: it is gone, or is nobody's to see.
bool identify(ProcessSource& source, ProcessSample& sample) {
    const std::optional<std::string> path = source.path(sample.pid);
    if (!path) return false;
    sample.path = wellFormed(*path);
    sample.name = executableName(sample.path);
    if (const auto owner = source.owner(sample.pid, *path))
        sample.app = {owner->kind, owner->id.empty() ? AppGrouping::toolName(sample.path)
                                                     : wellFormed(owner->id)};
    else
        sample.app = AppGrouping::identity(sample.path);
    return true;
}

} // namespace

// Since the previous call; 0 in the first.
struct ProcessSampler::Elapsed {
    std::uint64_t nanoseconds = 0;
    Timebase timebase;

    // Modulo 2^64, so a counter that steps back gives a huge rate once.
    double rate(std::uint64_t now, std::uint64_t before) const {
        return static_cast<double>(now - before) / (static_cast<double>(nanoseconds) / 1e9);
    }
    double cores(std::uint64_t now, std::uint64_t before) const {
        return now < before ? 0
                            : static_cast<double>(now - before) / static_cast<double>(nanoseconds);
    }
};

std::span<const ProcessSample> ProcessSampler::sample(ProcessSource& source, bool threads) {
    const Elapsed elapsed = advance(source);
    std::swap(pass_, previous_);
    pass_.samples.clear();
    pass_.baselines.clear();
    expected_ = 0;
    places_.clear();
    for (const ProcessCounters& now : source.processes(threads))
        if (now.pid >= 1) add(source, now, elapsed);
    return pass_.samples;
}

ProcessSampler::Elapsed ProcessSampler::advance(ProcessSource& source) {
    const std::uint64_t now = source.clock();
    const std::uint64_t last = std::exchange(lastClock_, now).value_or(now);
    const Timebase timebase = source.timebase();
    return {now > last ? nanoseconds(now - last, timebase) : 0, timebase};
}

// The place of a process of the previous call that was not found before.
std::optional<std::size_t> ProcessSampler::find(std::int32_t pid) {
    const std::vector<ProcessSample>& samples = previous_.samples;
    if (expected_ >= samples.size() || samples[expected_].pid != pid) {
        if (places_.empty()) {
            for (std::size_t i = expected_; i < samples.size(); ++i)
                places_.push_back({samples[i].pid, i});
            std::sort(places_.begin(), places_.end(),
                      [](const Place& a, const Place& b) { return a.pid < b.pid; });
        }
        const auto place =
            std::lower_bound(places_.begin(), places_.end(), pid,
                             [](const Place& p, std::int32_t value) { return p.pid < value; });
        if (place == places_.end() || samples[place->at].pid != pid) return std::nullopt;
        expected_ = place->at;
    }
    return expected_++;
}

void ProcessSampler::add(ProcessSource& source, const ProcessCounters& now,
                         const Elapsed& elapsed) {
    ProcessSample sample;
    Baseline before;
    const std::optional<std::size_t> place = find(now.pid);
    if (place) {
        sample = std::move(previous_.samples[*place]);
        before = previous_.baselines[*place];
        previous_.samples[*place].pid = 0;
    }
    const bool isKnown = place && before.start == now.start && before.revision == now.revision;
    sample.pid = now.pid;
    if (!isKnown && !identify(source, sample)) return;

    Baseline baseline{now.start, now.revision, 0};
    const bool hadUsage = std::exchange(sample.hasUsage, now.hasUsage);
    const bool isTimed = now.hasUsage && hadUsage && elapsed.nanoseconds != 0;
    if (now.hasUsage) baseline.cpuTime = nanoseconds(now.cpuTime, elapsed.timebase);
    sample.cpu = isTimed ? elapsed.cores(baseline.cpuTime, before.cpuTime) : 0;
    sample.diskReadRate = isTimed ? elapsed.rate(now.diskRead, sample.diskRead) : 0;
    sample.diskWriteRate = isTimed ? elapsed.rate(now.diskWritten, sample.diskWritten) : 0;
    sample.memory = now.hasUsage ? now.memory : 0;
    sample.diskRead = now.hasUsage ? now.diskRead : 0;
    sample.diskWritten = now.hasUsage ? now.diskWritten : 0;
    sample.threads = now.hasUsage ? now.threads : 0;
    pass_.samples.push_back(std::move(sample));
    pass_.baselines.push_back(baseline);
}

} // namespace tavero

#pragma once

#include "platform/ProcessSource.h"
#include "records/ProcessSample.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tavero {

// Every process of the machine with what it used since the previous call. Keeps only what that
// takes; whoever is gone is forgotten at once.
class ProcessSampler {
  public:
    // Valid until the next call. In the first one, and for a process that is new, CPU and rates are
    // 0: what a process used before it was first seen is never charged to an interval. Who it
    // belongs to is found out once in its life. A process that the source refuses to measure is
    // listed all the same; one without a path is not.
    std::span<const ProcessSample> sample(ProcessSource& source, bool threads);

  private:
    // What the next call needs of a process beside its sample.
    struct Baseline {
        std::uint64_t start = 0;
        std::uint32_t revision = 0;
        std::uint64_t cpuTime = 0; // nanoseconds
    };
    // A call's processes, the two lists side by side.
    struct Pass {
        std::vector<ProcessSample> samples;
        std::vector<Baseline> baselines;
    };
    struct Elapsed;

    Elapsed advance(ProcessSource& source);
    std::optional<std::size_t> find(std::int32_t pid);
    void add(ProcessSource& source, const ProcessCounters& now, const Elapsed& elapsed);

    std::optional<std::uint64_t> lastClock_;
    Pass pass_;
    Pass previous_; // what is in it has been moved on; kept for its room

    // Where in `previous_` a pid is. As a rule the lists agree but for a few, so the place after
    // the last one found is tried first, and the index (by pid) is made when that fails.
    struct Place {
        std::int32_t pid;
        std::size_t at;
    };
    std::size_t expected_ = 0;
    std::vector<Place> places_;
};

} // namespace tavero

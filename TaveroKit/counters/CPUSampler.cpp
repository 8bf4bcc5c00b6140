#include "counters/CPUSampler.h"

#include <cstddef>
#include <utility>

namespace tavero {

namespace {

// Ticks between two reads, each difference modulo 2^32: a counter may wrap.
struct Elapsed {
    double user = 0; // nice time included
    double system = 0;
    double idle = 0;

    double busy() const { return user + system; }
    double all() const { return busy() + idle; }

    Elapsed& operator+=(const Elapsed& other) {
        user += other.user;
        system += other.system;
        idle += other.idle;
        return *this;
    }
};

double difference(std::uint32_t now, std::uint32_t before) {
    return static_cast<double>(static_cast<std::uint32_t>(now - before));
}

Elapsed elapsed(const CpuTicks& now, const CpuTicks& before) {
    return {.user = difference(now.user, before.user) + difference(now.nice, before.nice),
            .system = difference(now.system, before.system),
            .idle = difference(now.idle, before.idle)};
}

} // namespace

std::optional<CPUSnapshot> CPUSampler::sample(CpuSource& source) {
    std::optional<std::vector<CpuTicks>> ticks = source.ticks();
    if (!ticks) return std::nullopt;
    if (previous_.size() != ticks->size()) previous_.assign(ticks->size(), {});

    CPUSnapshot snapshot;
    snapshot.perCore.reserve(ticks->size());
    Elapsed sum;
    for (std::size_t i = 0; i < ticks->size(); ++i) {
        const Elapsed core = elapsed((*ticks)[i], previous_[i]);
        snapshot.perCore.push_back(core.all() > 0 ? core.busy() / core.all() : 0);
        sum += core;
    }
    previous_ = std::move(*ticks);
    if (!(sum.all() > 0)) return std::nullopt;

    snapshot.user = sum.user / sum.all();
    snapshot.system = sum.system / sum.all();
    snapshot.idle = sum.idle / sum.all();
    snapshot.loadAverage = source.loadAverage();
    const CoreKinds kinds = source.coreKinds();
    snapshot.performanceCores = kinds.performance;
    snapshot.efficiencyCores = kinds.efficiency;
    return snapshot;
}

} // namespace tavero

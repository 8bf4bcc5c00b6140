#include "Readers.h"

#include "apps/AppIdentities.h"
#include "apps/ProcessSampler.h"
#include "apps/SystemActivities.h"
#include "counters/CPUSampler.h"
#include "counters/DiskReader.h"
#include "counters/MemoryReader.h"
#include "counters/NetworkReader.h"

#include <memory>
#include <utility>

namespace tavero {

Readers readers(Machine machine) {
    // The closures share what they read from; std::function wants them copyable.
    const auto sources = std::make_shared<Machine>(std::move(machine));
    Readers readers;
    if (sources->cpu)
        readers.cpu = [sources, sampler = CPUSampler()]() mutable {
            return sampler.sample(*sources->cpu);
        };
    if (sources->memory)
        readers.memory = [sources] { return MemoryReader::read(*sources->memory); };
    if (sources->disk) {
        readers.disk = [sources](bool includeFreeSpace) {
            return DiskReader::read(*sources->disk, "/", includeFreeSpace);
        };
        readers.volumes = [sources] { return DiskReader::volumes(*sources->disk); };
    }
    if (sources->network)
        readers.network = [sources] { return NetworkReader::read(*sources->network); };
    if (sources->processes)
        readers.processes = [sources, sampler = ProcessSampler()](bool threads) mutable {
            return sampler.sample(*sources->processes, threads);
        };
    readers.displayName = [sources](const AppIdentity& identity) {
        return AppGrouping::displayName(identity, sources->bundles.get());
    };
    if (sources->processes)
        readers.unusualActivity = [sources](std::span<const ProcessSample> samples) {
            return unusualActivity(samples, sources->processes->vocabulary());
        };
    return readers;
}

} // namespace tavero

#include "Readers.h"

#include "apps/AppIdentities.h"
#include "apps/ProcessSampler.h"
#include "apps/SystemActivities.h"
#include "counters/CPUSampler.h"
#include "counters/DiskReader.h"
#include "counters/MemoryReader.h"
#include "counters/NetworkReader.h"
#include "hardware/AppGPUSampler.h"
#include "hardware/SensorReader.h"
#include "sound/SoundController.h"

#include <memory>
#include <utility>

namespace tavero {

namespace {

// The closures share what they read from; std::function wants them copyable.
using Sources = std::shared_ptr<Machine>;

void addCounters(const Sources& sources, Readers& readers) {
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
}

void addApps(const Sources& sources, Readers& readers) {
    readers.displayName = [sources](const AppIdentity& identity) {
        return AppGrouping::displayName(identity, sources->bundles.get());
    };
    if (!sources->processes) return;
    readers.processes = [sources, sampler = ProcessSampler()](bool threads) mutable {
        return sampler.sample(*sources->processes, threads);
    };
    readers.unusualActivity = [sources](std::span<const ProcessSample> samples) {
        return unusualActivity(samples, sources->processes->vocabulary());
    };
}

void addHardware(const Sources& sources, Readers& readers) {
    if (sources->gpu) {
        readers.gpu = [sources] { return sources->gpu->gpu(); };
        readers.appGPU = [sources, sampler = AppGPUSampler()]() mutable {
            return sampler.sample(*sources->gpu);
        };
    }
    if (sources->battery) readers.battery = [sources] { return sources->battery->battery(); };
    if (sources->controller) readers.smc = [sources] { return sources->controller->read(); };
    if (sources->sensors)
        readers.sensors = [sources, reader = SensorReader(*sources->sensors)]() mutable {
            return std::optional(reader.read());
        };
}

void addConnections(const Sources& sources, Readers& readers) {
    if (sources->networkUsage)
        readers.networkUsage = [sources] { return sources->networkUsage->read(); };
    if (sources->wifi) readers.wifi = [sources] { return sources->wifi->link(); };
    if (sources->connection)
        readers.connection = [sources] { return sources->connection->current(); };
}

void addSound(const AudioSystem& audio, Readers& readers) {
    if (audio.objects)
        readers.sound = [objects = audio.objects] { return SoundController::read(*objects); };
}

} // namespace

Readers readers(Machine machine) {
    const auto sources = std::make_shared<Machine>(std::move(machine));
    Readers readers;
    addCounters(sources, readers);
    addApps(sources, readers);
    addHardware(sources, readers);
    addConnections(sources, readers);
    addSound(sources->audio, readers);
    return readers;
}

} // namespace tavero

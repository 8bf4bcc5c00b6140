#include "MonitorEngine.h"

#include "apps/AppGrouping.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <iterator>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto temperatureInterval = 5s;
constexpr auto freeSpaceInterval = 60s;
constexpr double shortestUsageInterval = 0.5; // seconds
constexpr std::size_t memoryHeavyCount = 3;

// Calls a reader that this machine may lack.
template <typename Reader, typename... Arguments>
auto readOr(const Reader& reader, decltype(reader(std::declval<Arguments>()...)) absent,
            Arguments... arguments) {
    return reader ? reader(arguments...) : absent;
}

// Bytes a second between two readings of a counter; modulo 2^64, so a counter that steps back gives
// a huge rate for one pass.
double rate(std::uint64_t now, std::uint64_t before, double seconds) {
    return static_cast<double>(now - before) / seconds;
}

template <typename Timed>
bool isDue(const Timed& last, Date now, Date::duration interval) {
    return !last || now - last->at >= interval;
}

} // namespace

MonitorEngine::MonitorEngine(Readers readers) : read_(std::move(readers)) {}

LiveSnapshot MonitorEngine::sample(Detail detail, std::int64_t topApps, bool threads, Date now) {
    assert(topApps >= 0);
    const bool full = detail == Detail::full;
    LiveSnapshot snapshot;
    snapshot.date = now;

    readDisk(detail, snapshot);
    readNetwork(snapshot);
    if (full) {
        refreshSensors(now);
        refreshWiFi(now);
    }
    fillApps(detail, topApps, threads, snapshot);
    if (full && read_.smc) {
        SMCSnapshot smc = read_.smc();
        snapshot.fanRPM = std::move(smc.fanRPM);
        snapshot.systemWatts = smc.systemWatts;
    }
    snapshot.cpu = readOr(read_.cpu, std::nullopt);
    snapshot.memory = readOr(read_.memory, std::nullopt);
    if (full) readPower(snapshot);
    if (lastTemperature_) snapshot.cpuTemperature = lastTemperature_->value;
    if (lastWiFi_) snapshot.wifi = lastWiFi_->value;
    if (full && read_.sound) snapshot.sound = read_.sound();
    snapshot.connection = readOr(read_.connection, ConnectionKind::other);
    return snapshot;
}

void MonitorEngine::readDisk(Detail detail, LiveSnapshot& snapshot) {
    const Date now = snapshot.date;
    const bool includeFreeSpace =
        detail == Detail::full && isDue(lastFreeSpace_, now, freeSpaceInterval);
    DiskSnapshot disk = readOr(read_.disk, DiskSnapshot{}, includeFreeSpace);
    if (includeFreeSpace)
        lastFreeSpace_ = {{.available = disk.available,
                           .capacity = disk.capacity,
                           .purgeable = disk.purgeable,
                           .name = disk.name,
                           .volumes = readOr(read_.volumes, std::vector<VolumeInfo>{})},
                          now};
    if (lastDisk_ && now > lastDisk_->at) {
        const double elapsed = secondsBetween(lastDisk_->at, now);
        snapshot.diskReadPerSecond = rate(disk.bytesRead, lastDisk_->value.bytesRead, elapsed);
        snapshot.diskWritePerSecond =
            rate(disk.bytesWritten, lastDisk_->value.bytesWritten, elapsed);
    }
    snapshot.diskReadTotal = disk.bytesRead;
    snapshot.diskWrittenTotal = disk.bytesWritten;
    lastDisk_ = {std::move(disk), now};

    if (lastFreeSpace_) {
        const DiskDetail& space = lastFreeSpace_->value;
        snapshot.diskAvailable = space.available;
        snapshot.diskCapacity = space.capacity;
        snapshot.diskPurgeable = space.purgeable;
        snapshot.diskName = space.name;
        snapshot.volumes = space.volumes;
    }
}

void MonitorEngine::readNetwork(LiveSnapshot& snapshot) {
    const std::optional<NetworkSnapshot> network = readOr(read_.network, std::nullopt);
    if (!network) return;
    const Date now = snapshot.date;
    if (lastNetwork_ && now > lastNetwork_->at) {
        const double elapsed = secondsBetween(lastNetwork_->at, now);
        snapshot.networkInPerSecond = rate(network->bytesIn, lastNetwork_->value.bytesIn, elapsed);
        snapshot.networkOutPerSecond =
            rate(network->bytesOut, lastNetwork_->value.bytesOut, elapsed);
    }
    snapshot.networkInTotal = network->bytesIn;
    snapshot.networkOutTotal = network->bytesOut;
    lastNetwork_ = {*network, now};
}

void MonitorEngine::refreshSensors(Date now) {
    if (!isDue(lastTemperature_, now, temperatureInterval)) return;
    const std::optional<TemperatureSnapshot> reading = readOr(read_.sensors, std::nullopt);
    lastTemperature_ = {reading ? reading->cpu() : std::nullopt, now};
    lastBatteryTemperature_ = reading ? reading->battery() : std::nullopt;
}

void MonitorEngine::refreshWiFi(Date now) {
    if (isDue(lastWiFi_, now, temperatureInterval))
        lastWiFi_ = {readOr(read_.wifi, std::nullopt), now};
}

void MonitorEngine::fillApps(Detail detail, std::int64_t topApps, bool threads,
                             LiveSnapshot& snapshot) {
    if (detail == Detail::light || !read_.processes) return;
    const std::span<const ProcessSample> samples = read_.processes(threads);
    const std::vector<AppGroup> groups =
        AppGrouping::group(samples, [this](const AppIdentity& identity) -> const std::string& {
            return name(identity);
        });
    const UsageExtras extras = readExtras(samples, snapshot.date);
    const auto row = [&](const AppGroup& group) { return usage(group, extras, networkTotals_); };

    const auto top = std::min(std::ssize(groups), std::max<std::ptrdiff_t>(topApps, 0));
    std::transform(groups.begin(), groups.begin() + top, std::back_inserter(snapshot.apps), row);

    std::vector<const AppGroup*> byMemory;
    byMemory.reserve(groups.size());
    for (const AppGroup& group : groups) byMemory.push_back(&group);
    std::stable_sort(byMemory.begin(), byMemory.end(),
                     [](const auto* a, const auto* b) { return a->memory() > b->memory(); });
    if (byMemory.size() > memoryHeavyCount) byMemory.resize(memoryHeavyCount);
    for (const AppGroup* group : byMemory) snapshot.memoryHeavyApps.push_back(row(*group));

    std::vector<AppUsage> onNetwork;
    for (const AppGroup& group : groups) {
        const auto& processes = group.processes();
        if (networkTotals_.contains(group.identity()) ||
            std::any_of(processes.begin(), processes.end(), [&](const ProcessSample* process) {
                return extras.networkRates.contains(process->pid);
            }))
            onNetwork.push_back(row(group));
    }
    snapshot.networkApps = networkApps(std::move(onNetwork));

    snapshot.appCount = std::ssize(groups);
    snapshot.processCount = std::ssize(samples);
    if (read_.unusualActivity) snapshot.systemActivity = read_.unusualActivity(samples);
}

UsageExtras MonitorEngine::readExtras(std::span<const ProcessSample> samples, Date now) {
    UsageExtras extras;
    if (read_.appGPU) extras.gpuShares = read_.appGPU();
    if (read_.networkUsage) readNetworkUsage(samples, now, extras);
    return extras;
}

void MonitorEngine::readNetworkUsage(std::span<const ProcessSample> samples, Date now,
                                     UsageExtras& extras) {
    const std::unordered_map<std::int32_t, NetworkBytes> usage = read_.networkUsage();
    const std::optional<Date> previous = std::exchange(lastNetworkUsage_, now);
    const double elapsed =
        previous ? std::max(secondsBetween(*previous, now), shortestUsageInterval) : 0;
    if (previous)
        for (const auto& [pid, bytes] : usage)
            extras.networkRates[pid] = {static_cast<double>(bytes.received) / elapsed,
                                        static_cast<double>(bytes.sent) / elapsed};
    for (const ProcessSample& sample : samples) {
        const auto bytes = usage.find(sample.pid);
        if (bytes == usage.end()) continue;
        NetworkBytes& total = networkTotals_[sample.app];
        total.received = saturatingSum(total.received, bytes->second.received);
        total.sent = saturatingSum(total.sent, bytes->second.sent);
    }
}

void MonitorEngine::readPower(LiveSnapshot& snapshot) {
    snapshot.gpu = readOr(read_.gpu, std::nullopt);
    snapshot.battery = readOr(read_.battery, std::nullopt);
    if (!snapshot.battery) return;
    if (!snapshot.battery->temperatureCelsius)
        snapshot.battery->temperatureCelsius = lastBatteryTemperature_;
    snapshot.battery->estimateTimeLeft(snapshot.systemWatts);
}

const std::string& MonitorEngine::name(const AppIdentity& identity) {
    auto [entry, isNew] = names_.try_emplace(identity);
    if (isNew) entry->second = readOr(read_.displayName, identity.id, identity);
    return entry->second;
}

} // namespace tavero

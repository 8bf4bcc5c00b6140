#pragma once

#include "Readers.h"
#include "apps/AppRows.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavero {

// One sampling pass over the machine. It keeps what rates and caches need between passes, and has
// no timer, no thread and no lock of its own: its owner calls it from one worker, one pass at a
// time.
class MonitorEngine {
  public:
    // How much of the machine a pass touches. A light one reads only what is cheap: CPU, memory,
    // disk and network counters; the rest comes from caches or stays absent.
    enum class Detail { light, full };

    explicit MonitorEngine(Readers readers);

    // `topApps` is how many rows LiveSnapshot::apps may hold, at least 0. `threads` asks for thread
    // counts, which cost one more read a process. `now` is when the pass begins.
    LiveSnapshot sample(Detail detail, std::int64_t topApps, bool threads, Date now);

  private:
    void readDisk(Detail detail, LiveSnapshot& snapshot);
    void readNetwork(LiveSnapshot& snapshot);
    void refreshSensors(Date now);
    void refreshWiFi(Date now);
    void fillApps(Detail detail, std::int64_t topApps, bool threads, LiveSnapshot& snapshot);
    UsageExtras readExtras(std::span<const ProcessSample> samples, Date now);
    void readNetworkUsage(std::span<const ProcessSample> samples, Date now, UsageExtras& extras);
    void readPower(LiveSnapshot& snapshot);
    const std::string& name(const AppIdentity& identity);

    template <typename Value>
    struct Timed {
        Value value;
        Date at;
    };
    struct DiskDetail {
        std::optional<std::int64_t> available;
        std::optional<std::int64_t> capacity;
        std::optional<std::int64_t> purgeable;
        std::optional<std::string> name;
        std::vector<VolumeInfo> volumes;
    };

    Readers read_;
    std::optional<Timed<DiskSnapshot>> lastDisk_;
    std::optional<Timed<NetworkSnapshot>> lastNetwork_;
    std::optional<Timed<std::optional<double>>> lastTemperature_;
    std::optional<double> lastBatteryTemperature_;
    std::optional<Timed<std::optional<WiFiLink>>> lastWiFi_;
    std::optional<Timed<DiskDetail>> lastFreeSpace_;
    std::optional<Date> lastNetworkUsage_;
    NetworkTotals networkTotals_;                        // since the engine was made, never trimmed
    std::unordered_map<AppIdentity, std::string> names_; // never evicted
};

} // namespace tavero

#include "presentation/test/RandomSnapshot.h"

#include <array>
#include <limits>

namespace tavero {

namespace {

// One of the extremes, or about as often an ordinary value.
class Values {
  public:
    explicit Values(std::mt19937_64& random) : random_(random) {}

    bool flag() { return (random_() & 1) != 0; }

    std::uint64_t below(std::uint64_t end) { return random_() % end; }

    double number() {
        using Limits = std::numeric_limits<double>;
        constexpr std::array extremes{Limits::quiet_NaN(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::max(),
                                      Limits::lowest(),
                                      Limits::denorm_min(),
                                      -0.0,
                                      -0.004,
                                      -0.3,
                                      0.0,
                                      1e300};
        if (flag()) return extremes[below(extremes.size())];
        return static_cast<double>(below(2'000'000)) / (flag() ? 1e6 : 1.0);
    }

    std::int64_t integer() {
        using Limits = std::numeric_limits<std::int64_t>;
        constexpr std::array<std::int64_t, 7> extremes{
            Limits::min(), Limits::max(), -1, 0, 1, 60, 99};
        return flag() ? extremes[below(extremes.size())] : static_cast<std::int64_t>(below(5000));
    }

    std::uint64_t bytes() {
        constexpr std::array<std::uint64_t, 4> extremes{0, 1, std::uint64_t{1} << 63,
                                                        std::numeric_limits<std::uint64_t>::max()};
        return flag() ? extremes[below(extremes.size())] : below(64'000'000'000);
    }

    template <typename Value>
    std::optional<Value> maybe(Value value) {
        return flag() ? std::optional(std::move(value)) : std::nullopt;
    }

    std::vector<double> numbers() {
        std::vector<double> list(below(4));
        for (double& entry : list) entry = number();
        return list;
    }

  private:
    std::mt19937_64& random_;
};

AppUsage app(Values& values, int depth) {
    constexpr std::array kinds{AppIdentity::Kind::app, AppIdentity::Kind::system,
                               AppIdentity::Kind::tool};
    const std::string name = "App " + std::to_string(values.below(6));
    AppUsage row{.identity = {kinds[values.below(kinds.size())], name}, .name = name};
    row.bundlePath = values.maybe<std::string>("/System/Library/" + name);
    row.cpu = values.number();
    row.memory = values.bytes();
    row.processCount = values.integer();
    row.diskReadRate = values.number();
    row.diskWriteRate = values.number();
    row.gpu = values.maybe(values.number());
    row.gpuAverage = values.maybe(values.number());
    row.gpuPeak = values.maybe(values.number());
    row.cpuAverage = values.maybe(values.number());
    row.watts = values.maybe(values.number());
    row.flag = values.maybe<std::string>("Busy");
    row.note = values.maybe<std::string>("growing");
    row.memoryChange = values.maybe(values.integer());
    row.memoryShare = values.maybe(values.number());
    row.networkInRate = values.number();
    row.networkOutRate = values.number();
    row.networkInTotal = values.bytes();
    row.networkOutTotal = values.bytes();
    if (depth > 0) row.children.assign(values.below(3), app(values, depth - 1));
    return row;
}

std::vector<AppUsage> apps(Values& values) {
    std::vector<AppUsage> list;
    for (std::uint64_t left = values.below(5); left > 0; --left) list.push_back(app(values, 1));
    return list;
}

BatterySnapshot battery(Values& values) {
    return {.percent = values.integer(),
            .isCharging = values.flag(),
            .onExternalPower = values.flag(),
            .minutesToEmpty = values.maybe(values.integer()),
            .minutesToFull = values.maybe(values.integer()),
            .cycleCount = values.maybe(values.integer()),
            .health = values.maybe(values.number()),
            .temperatureCelsius = values.maybe(values.number()),
            .watts = values.maybe(values.number()),
            .remainingWattHours = values.maybe(values.number()),
            .currentIsStale = values.flag()};
}

MemorySnapshot memory(Values& values) {
    return {.total = values.bytes(),
            .app = values.bytes(),
            .wired = values.bytes(),
            .compressed = values.bytes(),
            .cached = values.bytes(),
            .swapUsed = values.bytes(),
            .pressure = static_cast<MemoryPressure>(values.below(4)),
            .swapTotal = values.bytes()};
}

} // namespace

LiveSnapshot randomSnapshot(std::mt19937_64& random) {
    Values values(random);
    LiveSnapshot snapshot;
    snapshot.date = Date(std::chrono::seconds(values.below(4'000'000'000)));
    if (values.flag())
        snapshot.cpu = {.user = values.number(),
                        .system = values.number(),
                        .idle = values.number(),
                        .perCore = values.numbers(),
                        .loadAverage = {values.number()},
                        .performanceCores = values.integer(),
                        .efficiencyCores = values.integer()};
    if (values.flag()) snapshot.memory = memory(values);
    if (values.flag())
        snapshot.gpu = {.device = values.number(),
                        .memoryInUse = values.bytes(),
                        .cores = values.maybe(values.integer())};
    if (values.flag()) snapshot.battery = battery(values);
    snapshot.systemWatts = values.maybe(values.number());
    snapshot.cpuTemperature = values.maybe(values.number());
    snapshot.fanRPM = values.numbers();
    if (values.flag())
        snapshot.sound = {.output = values.maybe<AudioOutput>({.name = "Speakers"}),
                          .volume = values.maybe(values.number()),
                          .isMuted = values.flag()};
    snapshot.diskReadPerSecond = values.number();
    snapshot.diskWritePerSecond = values.number();
    snapshot.diskAvailable = values.maybe(values.integer());
    snapshot.diskCapacity = values.maybe(values.integer());
    if (values.flag())
        snapshot.wifi = WiFiLink{.rssi = values.integer(),
                                 .linkSpeed = values.number(),
                                 .standard = values.maybe<std::string>("Wi-Fi 7")};
    snapshot.connection = static_cast<ConnectionKind>(values.below(5));
    snapshot.networkInPerSecond = values.number();
    snapshot.networkOutPerSecond = values.number();
    snapshot.networkInTotal = values.bytes();
    snapshot.networkOutTotal = values.bytes();
    snapshot.processCount = values.integer();
    snapshot.apps = apps(values);
    snapshot.memoryHeavyApps = apps(values);
    snapshot.networkApps = apps(values);
    if (values.flag())
        snapshot.systemActivity = {.process = "indexer", .description = "Indexing", .cpu = 2};
    return snapshot;
}

} // namespace tavero

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace tavero {

// One engine class of a graphics processor, as much as a client used of it.
struct DrmEngine {
    std::string name; // "gfx", "render", "video", as the driver has it
    std::uint64_t time = 0;
    // Of drivers that count cycles instead: the client's, and all that passed. Both 0 elsewhere.
    std::uint64_t cycles = 0;
    std::uint64_t totalCycles = 0;

    bool operator==(const DrmEngine&) const = default;
};

// One use of a graphics device by a process: what /proc/PID/fdinfo/N says of it.
struct DrmClient {
    std::string device; // the PCI address; the driver's name if it has none
    std::uint64_t id = 0;
    std::vector<DrmEngine> engines; // times in nanoseconds
    std::uint64_t memory = 0;       // bytes that lie in memory and that it shares with nobody

    bool operator==(const DrmClient&) const = default;
};

// drm-pdev, drm-driver, drm-client-id, drm-engine-NAME, drm-cycles-NAME with drm-total-cycles-NAME,
// drm-resident-REGION less drm-shared-REGION, drm-memory-REGION of older drivers. Absent without an
// id: it can't be told from others then.
std::optional<DrmClient> parseDrmClient(std::string_view text);

// How much of a graphics processor its clients kept busy between two rounds.
struct DrmLoad {
    double busiest = 0; // the busiest of its engine classes, a fraction
    double render = 0;  // the one that draws

    bool operator==(const DrmLoad&) const = default;
};

// The GPU time of each process, added up over rounds in which all clients are read. A client that
// several files lead to, as after a fork or when it was handed over, counts once: for whom it
// counted before, else for the process of the highest pid, which as a rule got it from the other.
//
// A process begins with what its clients used until then. A client that it opens later counts from
// its first round on, and one that it closes takes nothing away.
class DrmClients {
  public:
    // `now` in nanoseconds.
    void beginRound(std::uint64_t now);
    void add(std::int32_t pid, const DrmClient& client);
    // For a client that is left alone in this round: its process keeps what it has.
    void keep(std::int32_t pid) { present_.insert(pid); }
    void endRound();

    const std::unordered_map<std::int32_t, std::uint64_t>& times() const { return times_; }

    // Absent if no client of this device was there in both of the last rounds.
    std::optional<DrmLoad> load(const std::string& device) const;
    // What its clients hold, bytes.
    std::uint64_t memory(const std::string& device) const;

  private:
    struct Client {
        std::int32_t pid = 0;
        std::vector<DrmEngine> engines;
        std::uint64_t growth = 0;  // nanoseconds in this round
        std::uint64_t initial = 0; // nanoseconds, when it was first seen
        bool isNew = true;
        bool isSeen = false; // in this round
        bool isStillHeld = false;
        std::int32_t successor = 0;
    };
    struct Device {
        std::map<std::string, std::uint64_t> busy; // nanoseconds in this round, by engine
        std::uint64_t memory = 0;
        bool isCompared = false;
    };
    using Key = std::pair<std::string, std::uint64_t>; // device, id

    void measure(const DrmClient& told, Client& client);
    std::uint64_t growthOf(const DrmEngine& before, const DrmEngine& now) const;

    std::uint64_t now_ = 0;
    std::uint64_t elapsed_ = 0;
    std::map<Key, Client> clients_;
    std::map<std::string, Device> devices_;
    std::unordered_map<std::int32_t, std::uint64_t> times_;
    std::unordered_set<std::int32_t> present_; // in this round
};

} // namespace tavero

#pragma once

#include "network/ConnectionService.h"
#include "platform/mac/network/NetworkStatistics.h"
#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// Under which keys the statistics service tells what we want.
struct StatisticsKeys {
    std::string received;     // kNStatSrcKeyRxBytes
    std::string sent;         // kNStatSrcKeyTxBytes
    std::string pid;          // kNStatSrcKeyPID
    std::string name;         // kNStatSrcKeyProcessName
    std::string effectivePid; // kNStatSrcKeyEPID, or that of the pid on a system without one

    // Absent if the system lacks one that we need.
    static std::optional<StatisticsKeys> of(NetworkStatistics& statistics);
};

// The process that a connection belongs to. What one process carries for another is the other's.
// 0 if the dictionary does not tell.
std::int32_t ownerPid(const PropertyMap& description, const StatisticsKeys& keys);

// A count that the dictionary does not tell is 0.
NetworkBytes byteCounts(const PropertyMap& counts, const StatisticsKeys& keys);

// The connections of a Mac: all TCP and UDP sources of its statistics service.
class MacConnections final : public ConnectionService {
  public:
    explicit MacConnections(std::shared_ptr<NetworkStatistics> statistics);

    bool start(std::weak_ptr<Connections> connections) override;
    void queryCounts(std::function<void()> done) override;

  private:
    std::shared_ptr<NetworkStatistics> statistics_;
};

} // namespace tavero

#pragma once

#include "network/ConnectionService.h"
#include "platform/ConnectionSource.h"

#include <chrono>
#include <memory>

namespace tavero {

// What each process moves over the network, out of a service that counts by connection.
class NetworkUsageReader final : public NetworkUsageSource {
  public:
    // Null if the service can't start. `patience` is how long a read waits for the counts.
    static std::unique_ptr<NetworkUsageReader>
    start(std::unique_ptr<ConnectionService> service,
          std::chrono::milliseconds patience = std::chrono::milliseconds(500));

    // Counts that come too late are part of the next call. Not to be called by the service itself.
    std::unordered_map<std::int32_t, NetworkBytes> read() override;

  private:
    NetworkUsageReader(std::unique_ptr<ConnectionService> service,
                       std::chrono::milliseconds patience);

    std::chrono::milliseconds patience_;
    // The service knows it only weakly: what it still calls back after our end does nothing.
    std::shared_ptr<Connections> connections_ = std::make_shared<Connections>();
    std::unique_ptr<ConnectionService> service_;
};

} // namespace tavero

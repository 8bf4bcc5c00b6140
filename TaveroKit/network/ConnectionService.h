#pragma once

#include "network/Connections.h"

#include <functional>
#include <memory>

namespace tavero {

// A service of the system that counts the bytes of each network connection and calls back about
// them, on a thread of its own, one call at a time.
class ConnectionService {
  public:
    virtual ~ConnectionService() = default;

    // From now on tells `connections` of all there are and will be, and nobody once that is gone.
    // False if the system lacks the service.
    virtual bool start(std::weak_ptr<Connections> connections) = 0;

    // Asks for the counts of all connections. `done` is called after the last of them, from any
    // thread, perhaps late or never.
    virtual void queryCounts(std::function<void()> done) = 0;
};

} // namespace tavero

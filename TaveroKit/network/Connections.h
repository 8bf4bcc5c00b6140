#pragma once

#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tavero {

// The network connections of all processes, as a service tells of them, and how much of each was
// collected: running counters in, the bytes of each process since the last time out. All calls may
// come from any thread.
class Connections {
  public:
    // The service's handle of one connection. Once that is removed, it may stand for another.
    using Source = const void*;

    void opened(Source source);
    // A pid below 1 is one that nobody knows.
    void described(Source source, std::int32_t pid, std::string name);
    // What went over it since it was opened.
    void counted(Source source, const NetworkBytes& bytes);
    // It stays until it was collected, so that its last bytes count.
    void removed(Source source);

    // What each process moved since the last call, by pid. The first call is empty: it only sets
    // where to go on from, so that what went before is no burst. A connection waits until its
    // process is known.
    std::unordered_map<std::int32_t, NetworkBytes> collect();

  private:
    struct Connection {
        std::int32_t pid = 0; // 0 until it is described
        std::string name;     // of the process; nothing depends on it
        NetworkBytes bytes;
        NetworkBytes settled; // the part of `bytes` that its process was credited with
        bool isClosed = false;
    };

    bool isWaiting(const Connection& connection) const;
    void settle(Connection& connection);

    std::mutex mutex_;
    std::unordered_map<Source, Connection> connections_;
    std::unordered_map<std::int32_t, NetworkBytes> credits_; // by pid, not yet collected
    bool hasBaseline_ = false;
};

} // namespace tavero

#include "network/NetworkUsageReader.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace tavero {

namespace {

// A signal from another thread, given once or more often.
class Signal {
  public:
    void give() {
        const std::lock_guard lock(mutex_);
        isGiven_ = true;
        given_.notify_all();
    }

    void await(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex_);
        given_.wait_for(lock, patience, [&] { return isGiven_; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    bool isGiven_ = false;
};

} // namespace

std::unique_ptr<NetworkUsageReader>
NetworkUsageReader::start(std::unique_ptr<ConnectionService> service,
                          std::chrono::milliseconds patience) {
    std::unique_ptr<NetworkUsageReader> reader(
        new NetworkUsageReader(std::move(service), patience));
    if (!reader->service_->start(reader->connections_)) return nullptr;
    return reader;
}

NetworkUsageReader::NetworkUsageReader(std::unique_ptr<ConnectionService> service,
                                       std::chrono::milliseconds patience)
    : patience_(patience), service_(std::move(service)) {}

std::unordered_map<std::int32_t, NetworkBytes> NetworkUsageReader::read() {
    const auto counted = std::make_shared<Signal>(); // may be given after this read
    service_->queryCounts([counted] { counted->give(); });
    counted->await(patience_);
    return connections_->collect();
}

} // namespace tavero

#include "time/PendingCalls.h"

namespace tavero {

class PendingCalls::Entry final : public PendingCall {
  public:
    Entry(std::shared_ptr<Calls> calls, Order order) : calls_(std::move(calls)), order_(order) {}
    ~Entry() override { calls_->erase(order_); }

  private:
    std::shared_ptr<Calls> calls_;
    Order order_;
};

Timer PendingCalls::add(std::chrono::nanoseconds due, std::function<void()> action) {
    const Order order{due, sequence_++};
    calls_->emplace(order, std::move(action));
    return std::make_unique<Entry>(calls_, order);
}

std::optional<std::chrono::nanoseconds> PendingCalls::nextDue() const {
    if (calls_->empty()) return std::nullopt;
    return calls_->begin()->first.first;
}

std::optional<PendingCalls::Call> PendingCalls::take(std::chrono::nanoseconds until) {
    if (calls_->empty() || calls_->begin()->first.first > until) return std::nullopt;
    auto first = calls_->extract(calls_->begin());
    return Call{first.key().first, std::move(first.mapped())};
}

} // namespace tavero

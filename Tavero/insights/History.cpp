#include "insights/History.h"

#include "history/Calendar.h"
#include "history/HistoryStore.h"

#include <exception>
#include <utility>

namespace tavero {

namespace {

// A minute of the fastest sampling.
constexpr std::size_t mostPendingSamples = 60;
// Looks without apps are as small as they are frequent, and need not wake the worker each time.
constexpr std::size_t mostWaiting = 12;

} // namespace

// Made and used on the worker; it only goes away with the last job that holds it.
struct History::Place {
    std::unique_ptr<HistoryStore> store;
};

History::History(std::optional<std::filesystem::path> file, std::unique_ptr<Worker> worker,
                 Clock& clock, Settings& settings)
    : clock_(clock), settings_(settings), place_(std::make_shared<Place>()),
      worker_(std::move(worker)) {
    worker_->call(
        [place = place_, file = std::move(file)] {
            try {
                place->store = std::make_unique<HistoryStore>(file);
            } catch (const std::exception&) {
                // The machine is watched all the same, and nobody needs to hear of it.
            }
            return true;
        },
        [](bool) {});
}

History::~History() = default;

bool History::takesMore() const {
    return settings_.get(keys::keepHistory) && pendingSamples_ < mostPendingSamples;
}

template <typename Job>
void History::write(std::size_t samples, Job job) {
    pendingSamples_ += samples;
    worker_->call(
        [place = place_, job = std::move(job)] {
            if (place->store) job(*place->store);
            return true;
        },
        [this, samples](bool) { pendingSamples_ -= samples; });
}

void History::record(const LiveSnapshot& snapshot, std::optional<double> appSeconds) {
    if (!takesMore()) return;
    waiting_.push_back({snapshot, appSeconds});
    if (!snapshot.apps.empty() || waiting_.size() >= mostWaiting) writeWaiting();
}

void History::writeWaiting() {
    if (waiting_.empty()) return;
    const std::size_t count = waiting_.size();
    write(count, [samples = std::exchange(waiting_, {})](HistoryStore& store) {
        for (const Sample& sample : samples) store.record(sample.snapshot, sample.appSeconds);
    });
}

void History::recordBluetooth(const BluetoothSnapshot& snapshot) {
    if (!takesMore()) return;
    write(1, [snapshot, at = clock_.now()](HistoryStore& store) {
        store.recordBluetooth(snapshot, at);
    });
}

void History::report(int days, std::function<void(std::optional<InsightsReport>)> done) {
    writeWaiting();
    worker_->call(
        [place = place_, days, now = clock_.now()]() -> std::optional<InsightsReport> {
            if (!place->store) return std::nullopt;
            return place->store->report(days, now, Calendar::current());
        },
        std::move(done));
}

void History::deleteAll() {
    waiting_.clear();
    worker_->call(
        [place = place_] {
            if (place->store) place->store->deleteAll();
            return true;
        },
        [](bool) {});
}

} // namespace tavero

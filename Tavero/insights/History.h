#pragma once

#include "history/InsightsReport.h"
#include "records/BluetoothSnapshot.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"
#include "settings/Settings.h"
#include "time/Clock.h"
#include "time/Worker.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tavero {

class HistoryStore;

// The history of the machine, kept on a worker of its own: a slow disk holds up nothing else. Main
// thread only; whoever asks is answered later, there too.
class History {
  public:
    // Opens the store there, in the worker's first job; absent keeps it in memory. One that can't
    // be opened leaves the program without a history, silently. The clock and the settings must
    // outlive the history.
    History(std::optional<std::filesystem::path> file, std::unique_ptr<Worker> worker, Clock& clock,
            Settings& settings);
    ~History();

    // Takes part in the history unless the user wants none; up to a minute later, so that a machine
    // at rest stays at rest. While the disk doesn't keep up for long, what comes is dropped: memory
    // stays bounded.
    void record(const LiveSnapshot& snapshot, std::optional<double> appSeconds);
    void recordBluetooth(const BluetoothSnapshot& snapshot);

    // The last days, today included. Absent without a store.
    void report(int days, std::function<void(std::optional<InsightsReport>)> done);
    void deleteAll();

  private:
    struct Place; // what the worker holds

    struct Sample {
        LiveSnapshot snapshot;
        std::optional<double> appSeconds;
    };

    bool takesMore() const;
    void writeWaiting();
    template <typename Job>
    void write(std::size_t samples, Job job);

    Clock& clock_;
    Settings& settings_;
    std::vector<Sample> waiting_;    // for the next write
    std::size_t pendingSamples_ = 0; // on their way
    std::shared_ptr<Place> place_;
    std::unique_ptr<Worker> worker_; // ends first
};

} // namespace tavero

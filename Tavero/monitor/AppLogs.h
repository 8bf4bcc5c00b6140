#pragma once

#include "records/AppUsage.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavero {

// What the rows of the app tables did lately: a minute of CPU and GPU, an hour of memory. Kept by a
// row's id, in memory only.
class AppLogs {
  public:
    // Call both on every pass that has apps.
    //
    // The CPU and GPU of each app and of its children. A row that is not in this pass loses its
    // log.
    void recordCPU(const LiveSnapshot& snapshot);
    // The memory of each app, once a minute. The log of an app that is gone stays for an hour.
    void recordMemory(const LiveSnapshot& snapshot);

    // The row with its averages, its share of memory and how its memory changed. A row that grew
    // far from its low, is at its peak and has no note yet gets one. `now` is the clock's time, not
    // the pass's.
    AppUsage withAverages(AppUsage row, std::uint64_t physicalMemory, Date now) const;

  private:
    struct Share {
        Date time;
        double value; // cores, or the fraction of the GPU
    };
    struct Usage {
        std::vector<Share> cpu;
        std::vector<Share> gpu;
        std::uint64_t pass = 0; // the last one that the row was in
    };
    struct Footprint {
        Date time;
        std::uint64_t bytes;
    };

    void record(const AppUsage& row, Date date);
    void addAverages(AppUsage& row, std::uint64_t physicalMemory) const;
    void addGrowth(AppUsage& row, Date now) const;

    std::unordered_map<std::string, Usage> usage_;
    std::unordered_map<std::string, std::vector<Footprint>> memory_;
    std::uint64_t pass_ = 0;
};

} // namespace tavero

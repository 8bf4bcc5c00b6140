#pragma once

#include "history/AppHour.h"
#include "history/Calendar.h"
#include "history/Database.h"
#include "history/HistoryError.h"
#include "history/InsightsReport.h"
#include "history/MinuteBucket.h"
#include "records/BluetoothSnapshot.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The only lasting record of what the machine did: a row for each minute, one for each app and UTC
// hour, and the battery levels of Bluetooth devices, in one SQLite file of the user. What is older
// than `keepDays` is forgotten. For one thread, and one that may wait for a disk.
//
// Once it is open nothing fails aloud: a row that can't be written is lost, a figure that can't be
// read is absent.
class HistoryStore {
  public:
    static constexpr std::int64_t keepDays = 30;

    // Where the file belongs on this system. Absent if the user has no folder for it. Defined once
    // a platform.
    static std::optional<std::filesystem::path> defaultURL();

    // Opens the file, and creates it and its folder if need be. Absent keeps the history in memory.
    // Throws HistoryError, or std::filesystem::filesystem_error for the folder.
    explicit HistoryStore(const std::optional<std::filesystem::path>& url);

    // Adds one sample. Its apps count for `appSeconds`; absent leaves them out.
    void record(const LiveSnapshot& snapshot, std::optional<double> appSeconds);
    // Writes the levels of the connected devices that changed, or that were last written an hour
    // ago.
    void recordBluetooth(const BluetoothSnapshot& snapshot, Date at);

    // Writes what is in memory: at most a minute, and five minutes of the apps. A row of the
    // minute holds only what came since the last write; the rows of apps add up.
    void flush();
    void deleteAll();
    void prune(Date now);

    // The last `days` days, 0 at least, with the day of `now` as the last one.
    InsightsReport report(std::int64_t days, Date now, const Calendar& calendar);

  private:
    // What was last written of a device.
    struct Level {
        Date date{};
        std::int64_t percent = 0;
    };

    void addToMinute(const LiveSnapshot& snapshot, std::int64_t start);
    void addToHour(const LiveSnapshot& snapshot, std::int64_t hour, double seconds);
    void writeMinute();
    void writeApps();

    Database db_;
    std::optional<MinuteBucket> minute_;
    std::optional<AppHour> appHour_;
    std::optional<Date> lastPrune_;              // absent: not since the start
    std::optional<Date> lastAppWrite_;           // likewise
    std::map<std::string, Level> lastBluetooth_; // by the device's name
};

} // namespace tavero

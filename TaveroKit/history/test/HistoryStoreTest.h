#pragma once

#include "history/HistoryStore.h"

#include "history/test/SQLiteFile.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

using Rows = std::vector<std::string>;

// A store on a new file, fed with little, and what it has written. Times are seconds after the
// start of an hour.
class HistoryStoreTest : public testing::Test {
  protected:
    static constexpr std::int64_t hour = 1'749'988'800;

    static Date at(double seconds) {
        return Date(std::chrono::seconds(hour)) +
               std::chrono::duration_cast<std::chrono::nanoseconds>(
                   std::chrono::duration<double>(seconds));
    }
    static AppUsage app(const std::string& id, double cpu = 0, std::uint64_t memory = 0) {
        return {
            .identity = {AppIdentity::Kind::tool, id}, .name = id, .cpu = cpu, .memory = memory};
    }
    static AppUsage networkApp(const std::string& id, double in, double out) {
        AppUsage row = app(id);
        row.networkInRate = in;
        row.networkOutRate = out;
        return row;
    }
    static BluetoothSnapshot earbuds(std::int64_t percent) {
        return {.connected = {{.name = "Earbuds", .batteries = {{"Battery", percent}}}}};
    }

    // What is in the file, without what is still in memory.
    Rows rows(std::string_view statement) { return SQLiteFile(file_).rows(statement); }
    Rows minutes(const std::string& columns) {
        return rows("SELECT (ts - 1749988800), " + columns + " FROM minute ORDER BY ts");
    }
    Rows apps(const std::string& columns) {
        return rows("SELECT (hour - 1749988800), app, " + columns +
                    " FROM app_hour ORDER BY hour, app");
    }
    Rows levels() {
        return rows("SELECT ts - 1749988800, device, percent FROM bluetooth_battery ORDER BY ts");
    }
    void record(double seconds, double cpu) {
        store_.record({.date = at(seconds), .cpu = CPUSnapshot{.user = cpu}}, std::nullopt);
    }
    void recordApp(double seconds, const AppUsage& row, double appSeconds) {
        store_.record({.date = at(seconds), .apps = {row}}, appSeconds);
    }

    TemporaryTree tree_;
    std::filesystem::path file_ = tree_.root() / "new" / "folders" / "history.sqlite";
    HistoryStore store_{file_};
};

} // namespace tavero

#include "history/test/SmallHistory.h"

#include "history/test/SQLiteFile.h"

#include <chrono>
#include <cstdint>
#include <set>

namespace tavero::SmallHistory {

namespace {

const std::string step = "(ts - 1749988800) / 300";

Date dateOf(int at) { return Date(std::chrono::seconds(start + std::int64_t{300} * at)); }

AppUsage app(const std::string& name) {
    return {.identity = {AppIdentity::Kind::app, "/Applications/" + name + ".app"},
            .name = name,
            .bundlePath = "/Applications/" + name + ".app",
            .cpu = 0.5,
            .memory = 1 << 20,
            .diskWriteRate = 10,
            .networkInRate = 2,
            .networkOutRate = 1};
}

// The steps that have a row. Fails on half a row: `isWhole` must hold for each.
std::set<int> stepsIn(SQLiteFile& file, const std::string& table, const std::string& isWhole) {
    std::set<int> found;
    for (const std::string& row : file.rows("SELECT " + step + ", " + isWhole + " FROM " + table +
                                            " WHERE ts >= 1749988800"))
        found.insert(row.ends_with("|1") ? std::stoi(row) : -1);
    return found;
}

// Whether just the steps before `written` are there, and perhaps that one too.
bool agrees(const std::set<int>& found, int written, bool mayBeLost) {
    if (!found.empty() && (*found.begin() < 0 || *found.rbegin() > written)) return false;
    for (int at = 0; at < written; ++at)
        if (!mayBeLost && !found.contains(at)) return false;
    return true;
}

bool appsAgree(SQLiteFile& file, int finished, bool mayBeLost) {
    const auto rows =
        file.rows("SELECT samples, cpu_seconds = samples * 150.0"
                  " AND memory_sum = samples * 1048576.0 AND disk_written = samples * 3000.0"
                  " AND net_in = samples * 600.0 AND net_out = samples * 300.0"
                  " AND app = bundle_path AND app = '/Applications/' || name || '.app'"
                  " FROM app_hour WHERE hour >= 1749988800");
    if (rows.size() > 3 || (rows.size() < 3 && finished > 0 && !mayBeLost)) return false;
    for (const std::string& row : rows) {
        const int samples = std::stoi(row);
        if (!row.ends_with("|1") || samples > finished + 1) return false;
        if (samples < finished && !mayBeLost) return false;
    }
    return true;
}

} // namespace

void addOldRows(const std::filesystem::path& file) {
    SQLiteFile(file).run("INSERT INTO minute (ts, cpu) VALUES (60, 0.5), (120, 0.5);"
                         "INSERT INTO app_hour (hour, app) VALUES (0, 'a'), (3600, 'a');"
                         "INSERT INTO bluetooth_battery VALUES (1, 'b', 2), (3, 'b', 4);");
}

void live(HistoryStore& store, int at) {
    const double value = at;
    LiveSnapshot snapshot{.date = dateOf(at),
                          .cpu = CPUSnapshot{.user = value / 64},
                          .memory = MemorySnapshot{.app = static_cast<std::uint64_t>(at)},
                          .gpu = GPUSnapshot{.device = value / 128},
                          .battery = BatterySnapshot{.percent = at},
                          .systemWatts = value + 0.5,
                          .diskReadPerSecond = value + 1,
                          .diskWritePerSecond = value + 2,
                          .networkInPerSecond = value + 3,
                          .networkOutPerSecond = value + 4,
                          .apps = {app("Mail"), app("Maps"), app("Notes")}};
    snapshot.networkApps = snapshot.apps;
    store.record(snapshot, 300);
    store.recordBluetooth({.connected = {{.name = "Earbuds", .batteries = {{"Left", 50 + at}}}}},
                          dateOf(at));
}

bool hasMinute(const std::filesystem::path& file, int at) {
    const std::string statement = "SELECT 1 FROM minute WHERE " + step + " = " + std::to_string(at);
    return !SQLiteFile(file).rows(statement).empty();
}

std::string fault(const std::filesystem::path& path, int finished, bool mayBeLost) {
    SQLiteFile file(path);
    if (file.rows("PRAGMA integrity_check") != std::vector<std::string>{"ok"}) return "damaged";
    const auto tables = file.rows("SELECT name FROM sqlite_schema WHERE type = 'table'");
    if (tables.size() < 3) return finished < 0 ? "" : "a table is missing";
    if (finished < 0) return "";

    // The minute of a step is written by the one after it.
    const auto minutes =
        stepsIn(file, "minute",
                "cpu = " + step + " / 64.0 AND memory = " + step + " AND gpu = " + step +
                    " / 128.0 AND watts = " + step + " + 0.5 AND battery = " + step +
                    " AND disk_read = " + step + " + 1 AND disk_write = " + step +
                    " + 2 AND net_in = " + step + " + 3 AND net_out = " + step + " + 4");
    if (!agrees(minutes, finished - 1, mayBeLost)) return "a minute";
    if (!appsAgree(file, finished, mayBeLost)) return "an app";
    if (!agrees(stepsIn(file, "bluetooth_battery", "percent = 50 + " + step), finished, mayBeLost))
        return "a level";
    const std::string old = "SELECT 1 FROM minute WHERE ts < 1749988800"
                            " UNION ALL SELECT 1 FROM app_hour WHERE hour < 1749988800"
                            " UNION ALL SELECT 1 FROM bluetooth_battery WHERE ts < 1749988800";
    if (finished > 0 && !mayBeLost && !file.rows(old).empty()) return "an old row";
    return "";
}

} // namespace tavero::SmallHistory

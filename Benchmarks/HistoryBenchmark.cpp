#include "history/HistoryStore.h"
#include "platform/linux/TemporaryTree.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tavero {
namespace {

constexpr std::int64_t end = 1'750'377'600; // June 20, 2025
constexpr int appCount = 40;

Date at(std::int64_t seconds) { return Date(std::chrono::seconds(seconds)); }
Calendar utc() {
    return Calendar([](std::int64_t) { return 0; });
}

AppUsage app(int index) {
    const std::string name = "An Application " + std::to_string(index);
    const std::string path = "/Applications/" + name + ".app";
    return {.identity = {AppIdentity::Kind::app, path},
            .name = name,
            .bundlePath = path,
            .cpu = 0.01 * index,
            .memory = 300'000'000ull + static_cast<std::uint64_t>(index) * 1'234'567,
            .diskWriteRate = 1000.5 * index,
            .networkInRate = 100.25 * index,
            .networkOutRate = 10.75 * index};
}

LiveSnapshot snapshot(std::int64_t seconds, int apps) {
    LiveSnapshot snapshot{.date = at(seconds),
                          .cpu = CPUSnapshot{.user = 0.123, .system = 0.045},
                          .memory = MemorySnapshot{.app = 8'123'456'789},
                          .gpu = GPUSnapshot{.device = 0.111},
                          .battery = BatterySnapshot{.percent = 77},
                          .systemWatts = 9.87,
                          .diskReadPerSecond = 12345.6,
                          .diskWritePerSecond = 65432.1,
                          .networkInPerSecond = 2345.6,
                          .networkOutPerSecond = 345.6};
    for (int i = 0; i < apps; ++i) snapshot.apps.push_back(app(i));
    snapshot.networkApps.assign(snapshot.apps.begin(), snapshot.apps.begin() + apps * 3 / 8);
    return snapshot;
}

// Thirty days without a gap, 40 apps in each hour, ending before June 20, 2025: the rows that the
// store would have written, put there at once.
constexpr const char* fullMonthRows = R"(
    BEGIN;
    WITH RECURSIVE i(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM i WHERE n < 43199)
    INSERT INTO minute SELECT
        1747785600 + n * 60, n % 997 / 1003.0, 8123456789 + n % 997 / 7.0, n % 499 / 2003.0,
        n % 499 / 51.0, n % 101 / 1.7, n % 997 * 1234.5, n % 997 * 543.2, n % 499 * 234.5,
        n % 499 * 34.5 FROM i;
    WITH RECURSIVE i(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM i WHERE n < 28799)
    INSERT INTO app_hour SELECT
        1747785600 + n / 40 * 3600, '/Applications/An Application ' || (n % 40) || '.app',
        'An Application ' || (n % 40), '/Applications/An Application ' || (n % 40) || '.app',
        n % 139 * 1.7, n % 139 * 1.1e8, 60, n % 139 * 12345.6, n % 139 * 1234.5, n % 139 * 123.4
        FROM i;
    WITH RECURSIVE i(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM i WHERE n < 1439)
    INSERT INTO bluetooth_battery SELECT 1747785600 + n * 1800, 'Earbuds', n * 7 % 100 FROM i;
    COMMIT)";

void fill(const std::filesystem::path& file) {
    { const HistoryStore store(file); }
    sqlite3* connection = nullptr;
    sqlite3_open(file.c_str(), &connection);
    if (sqlite3_exec(connection, fullMonthRows, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection));
    sqlite3_close(connection);
}

class FullMonth {
  public:
    FullMonth() : file_(tree_.root() / "history.sqlite") { fill(file_); }

    const std::filesystem::path& file() const { return file_; }
    double bytesADay() const {
        return static_cast<double>(file_size(file_)) / HistoryStore::keepDays;
    }

  private:
    TemporaryTree tree_;
    std::filesystem::path file_;
};

const FullMonth& fullMonth() {
    static const FullMonth month;
    return month;
}

void HistoryReport(benchmark::State& state) {
    HistoryStore store(fullMonth().file());
    for (auto _ : state) {
        const InsightsReport report = store.report(state.range(0), at(end - 1), utc());
        benchmark::DoNotOptimize(&report);
    }
    state.counters["bytesADay"] = fullMonth().bytesADay();
}
BENCHMARK(HistoryReport)->Arg(7)->Arg(30)->Unit(benchmark::kMillisecond);

// The statements that SQLite is given while this lives, on connections opened meanwhile.
class StatementLog {
  public:
    StatementLog() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch)); }
    ~StatementLog() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(watch)); }
    StatementLog(const StatementLog&) = delete;
    StatementLog& operator=(const StatementLog&) = delete;

    static std::vector<std::string>& statements() {
        static std::vector<std::string> statements;
        return statements;
    }

  private:
    static int watch(sqlite3* connection, char**, const void*) {
        return sqlite3_trace_v2(
            connection, SQLITE_TRACE_STMT,
            [](unsigned, void*, void* statement, void*) {
                statements().emplace_back(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)));
                return 0;
            },
            nullptr);
    }
};

// The least that it can cost: SQLite running the very statements of the report, whose rows nobody
// looks at.
void HistoryStatements(benchmark::State& state) {
    {
        const StatementLog log;
        HistoryStore store(fullMonth().file());
        StatementLog::statements().clear();
        store.report(state.range(0), at(end - 1), utc());
    }
    const std::vector<std::string> statements = StatementLog::statements();
    sqlite3* connection = nullptr;
    sqlite3_open(fullMonth().file().c_str(), &connection);
    for (auto _ : state)
        for (const std::string& text : statements) {
            sqlite3_stmt* statement = nullptr;
            sqlite3_prepare_v2(connection, text.c_str(), -1, &statement, nullptr);
            while (sqlite3_step(statement) == SQLITE_ROW) benchmark::DoNotOptimize(statement);
            sqlite3_finalize(statement);
        }
    sqlite3_close(connection);
    state.counters["statements"] = static_cast<double>(statements.size());
}
BENCHMARK(HistoryStatements)->Arg(7)->Arg(30)->Unit(benchmark::kMillisecond);

// A pass that only adds to what is in memory, as nearly all do.
void HistoryPass(benchmark::State& state) {
    const TemporaryTree tree;
    HistoryStore store(tree.root() / "history.sqlite");
    const LiveSnapshot pass = snapshot(end, static_cast<int>(state.range(0)));
    const std::optional<double> seconds =
        pass.apps.empty() ? std::nullopt : std::optional<double>(5);
    for (auto _ : state) store.record(pass, seconds);
}
BENCHMARK(HistoryPass)->Arg(0)->Arg(appCount);

// A minute with its writes to a real disk, a fifth of those of 20 apps: one full pass in twelve,
// as with nothing open.
void HistoryMinute(benchmark::State& state) {
    const TemporaryTree tree;
    HistoryStore store(tree.root() / "history.sqlite");
    LiveSnapshot light = snapshot(end, 0), full = snapshot(end, 20);
    for (auto _ : state) {
        full.date = light.date + std::chrono::seconds(5);
        light.date = full.date;
        store.record(full, 60);
        for (int pass = 1; pass < 12; ++pass) {
            light.date += std::chrono::seconds(5);
            store.record(light, std::nullopt);
        }
    }
}
BENCHMARK(HistoryMinute)->Iterations(300)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tavero

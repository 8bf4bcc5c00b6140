#include "history/HistoryStore.h"

#include "history/HistoryReport.h"
#include "history/WholeSeconds.h"

namespace tavero {

namespace {

constexpr double appWriteInterval = 300;        // seconds
constexpr double bluetoothWriteInterval = 3600; // seconds
constexpr double pruneInterval = 3600;          // seconds

constexpr const char* schema[] = {
    R"(CREATE TABLE IF NOT EXISTS minute (
    ts INTEGER PRIMARY KEY, cpu REAL, memory REAL, gpu REAL, watts REAL, battery REAL,
    disk_read REAL, disk_write REAL, net_in REAL, net_out REAL))",
    R"(CREATE TABLE IF NOT EXISTS app_hour (
    hour INTEGER, app TEXT, name TEXT, bundle_path TEXT,
    cpu_seconds REAL, memory_sum REAL, samples INTEGER, disk_written REAL,
    net_in REAL DEFAULT 0, net_out REAL DEFAULT 0,
    PRIMARY KEY (hour, app)))",
    R"(CREATE TABLE IF NOT EXISTS bluetooth_battery (
    ts INTEGER, device TEXT, percent INTEGER, PRIMARY KEY (ts, device)))"};

constexpr const char* insertMinute = "INSERT OR REPLACE INTO minute VALUES (?,?,?,?,?,?,?,?,?,?)";
constexpr const char* insertLevel = "INSERT OR REPLACE INTO bluetooth_battery VALUES (?,?,?)";
// Several writes of one hour add up in its row.
constexpr const char* insertApp =
    R"(INSERT INTO app_hour (hour, app, name, bundle_path, cpu_seconds, memory_sum, samples, disk_written, net_in, net_out)
VALUES (?,?,?,?,?,?,?,?,?,?)
ON CONFLICT(hour, app) DO UPDATE SET cpu_seconds = cpu_seconds + excluded.cpu_seconds,
  memory_sum = memory_sum + excluded.memory_sum, samples = samples + excluded.samples,
  disk_written = disk_written + excluded.disk_written,
  net_in = net_in + excluded.net_in, net_out = net_out + excluded.net_out)";

// A file from before there were network figures gains them. On any other these fail, as they
// should.
constexpr const char* addedColumns[] = {"net_in", "net_out"};

std::string openable(const std::optional<std::filesystem::path>& url) {
    if (!url) return ":memory:";
    std::filesystem::create_directories(url->parent_path());
    return url->string();
}

} // namespace

HistoryStore::HistoryStore(const std::optional<std::filesystem::path>& url) : db_(openable(url)) {
    for (const char* statement : schema)
        if (!db_.execute(statement))
            throw HistoryError(HistoryError::Kind::query, db_.errorMessage());
    for (const char* column : addedColumns)
        db_.execute(std::string("ALTER TABLE app_hour ADD COLUMN ") + column + " REAL DEFAULT 0");
}

void HistoryStore::record(const LiveSnapshot& snapshot, std::optional<double> appSeconds) {
    const std::int64_t minute = wholeSeconds(snapshot.date) / 60 * 60;
    addToMinute(snapshot, minute);
    if (appSeconds && !(snapshot.apps.empty() && snapshot.networkApps.empty()))
        addToHour(snapshot, minute / 3600 * 3600, *appSeconds);
    if (!lastPrune_ || secondsBetween(*lastPrune_, snapshot.date) > pruneInterval)
        prune(snapshot.date);
}

// A clock that was set back ends the minute as well.
void HistoryStore::addToMinute(const LiveSnapshot& snapshot, std::int64_t start) {
    if (minute_ && minute_->start != start) writeMinute();
    if (!minute_) minute_ = MinuteBucket{.start = start};
    minute_->add(snapshot);
}

void HistoryStore::addToHour(const LiveSnapshot& snapshot, std::int64_t hour, double seconds) {
    if (appHour_ && appHour_->hour != hour) writeApps();
    if (!appHour_) appHour_ = AppHour{.hour = hour};
    appHour_->add(snapshot, seconds);
    if (lastAppWrite_ && secondsBetween(*lastAppWrite_, snapshot.date) < appWriteInterval) return;
    writeApps();
    lastAppWrite_ = snapshot.date;
}

void HistoryStore::writeMinute() {
    Statement statement(db_, insertMinute);
    statement.bind(minute_->start);
    for (const Average& average :
         {minute_->cpu, minute_->memory, minute_->gpu, minute_->watts, minute_->battery,
          minute_->diskRead, minute_->diskWrite, minute_->netIn, minute_->netOut})
        statement.bind(average.value());
    statement.next();
    minute_.reset();
}

void HistoryStore::writeApps() {
    for (const auto& [app, bucket] : appHour_->apps)
        Statement(db_, insertApp)
            .bind(appHour_->hour)
            .bind(app)
            .bind(bucket.name)
            .bind(bucket.bundlePath)
            .bind(bucket.cpuSeconds)
            .bind(bucket.memorySum)
            .bind(bucket.samples)
            .bind(bucket.diskWritten)
            .bind(bucket.networkIn)
            .bind(bucket.networkOut)
            .next();
    appHour_.reset();
}

void HistoryStore::recordBluetooth(const BluetoothSnapshot& snapshot, Date at) {
    for (const BluetoothDevice& device : snapshot.connected) {
        const auto lowest = device.lowestBattery();
        if (!lowest) continue;
        const auto last = lastBluetooth_.find(device.name);
        if (last != lastBluetooth_.end() && last->second.percent == lowest->percent &&
            secondsBetween(last->second.date, at) < bluetoothWriteInterval)
            continue;
        lastBluetooth_.insert_or_assign(device.name, Level{.date = at, .percent = lowest->percent});
        Statement(db_, insertLevel)
            .bind(wholeSeconds(at))
            .bind(device.name)
            .bind(lowest->percent)
            .next();
    }
}

void HistoryStore::flush() {
    if (minute_) writeMinute();
    if (appHour_) writeApps();
}

void HistoryStore::prune(Date now) {
    lastPrune_ = now;
    const std::string cutoff = std::to_string(wholeSeconds(now) - keepDays * 86400);
    db_.execute("DELETE FROM minute WHERE ts < " + cutoff + "; DELETE FROM app_hour WHERE hour < " +
                cutoff + "; DELETE FROM bluetooth_battery WHERE ts < " + cutoff + ";");
}

void HistoryStore::deleteAll() {
    minute_.reset();
    appHour_.reset();
    lastBluetooth_.clear();
    db_.execute("DELETE FROM minute; DELETE FROM app_hour; DELETE FROM bluetooth_battery;");
}

InsightsReport HistoryStore::report(std::int64_t days, Date now, const Calendar& calendar) {
    flush();
    return insightsReport(db_, days, now, calendar);
}

} // namespace tavero

#include "desktop/mac/MacBluetooth.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr std::int64_t notDetermined = 0;
constexpr std::int64_t allowedAlways = 3;
constexpr std::int64_t unknownSignal = 127; // in the low byte

// The form in which the frameworks want what the report writes with colons.
std::string dashed(std::string address) {
    std::replace(address.begin(), address.end(), ':', '-');
    return address;
}

} // namespace

MacBluetooth::MacBluetooth(std::unique_ptr<BluetoothReportSource> report,
                           std::unique_ptr<MacBluetoothCalls> calls, std::unique_ptr<Worker> worker,
                           std::shared_ptr<std::atomic<bool>> isCancelled)
    : calls_(std::move(calls)), isCancelled_(std::move(isCancelled)),
      reader_(std::make_shared<BluetoothReader>(std::move(report))), worker_(std::move(worker)) {}

MacBluetooth::~MacBluetooth() {
    if (isCancelled_) *isCancelled_ = true;
}

// Whoever asks during a reading is answered by the next one, which tells what has happened
// meanwhile. So there is never more than one waiting, however slow the tool is.
void MacBluetooth::read(std::function<void(Snapshot)> done) {
    readers_.push_back(std::move(done));
    if (!isReading_) startReading();
}

void MacBluetooth::startReading() {
    isReading_ = true;
    worker_->call([reader = reader_] { return reader->read(); },
                  [this, readers = std::exchange(readers_, {})](const Snapshot& snapshot) {
                      isReading_ = false;
                      if (!readers_.empty()) startReading();
                      for (const auto& done : readers) done(snapshot);
                  });
}

BluetoothPermission MacBluetooth::permission() {
    switch (calls_->authorization()) {
    case notDetermined:
        return BluetoothPermission::notAsked;
    case allowedAlways:
        return BluetoothPermission::granted;
    default:
        return BluetoothPermission::denied;
    }
}

void MacBluetooth::requestPermission(std::function<void()> done) {
    if (permission() != BluetoothPermission::notAsked) return done();
    askers_.push_back(std::move(done));
    if (askers_.size() > 1) return; // the system is asking
    calls_->createCentral([this] {
        for (const auto& asker : std::exchange(askers_, {})) asker();
    });
}

std::optional<std::int64_t> MacBluetooth::rssi(const std::string& address) {
    const auto device = calls_->device(dashed(address));
    if (!device || !device->isConnected()) return std::nullopt;
    const std::int64_t raw = device->rawRSSI();
    if (raw == 0 || (raw & 0xFF) == unknownSignal) return std::nullopt;
    return raw;
}

void MacBluetooth::connect(const std::string& address, std::function<void(bool)> done) {
    const std::shared_ptr<MacBluetoothDevice> device = calls_->device(dashed(address));
    if (!device) return done(false);
    const auto opening = openings_.insert(openings_.end(), {device, std::move(done)});
    // The answer may come from within the call.
    const auto isOver = std::make_shared<bool>(false);
    const auto complete = [this, opening, isOver](std::int32_t status) {
        if (!std::exchange(*isOver, true)) finish(opening, status);
    };
    if (const std::int32_t error = device->openConnection(complete)) complete(error);
}

void MacBluetooth::finish(std::list<Opening>::iterator opening, std::int32_t status) {
    const Opening over = std::move(*opening);
    openings_.erase(opening);
    // One that was connected already is reported as an error.
    over.done(status == 0 || over.device->isConnected());
}

void MacBluetooth::disconnect(const std::string& address, std::function<void(bool)> done) {
    const auto device = calls_->device(dashed(address));
    done(device && device->closeConnection() == 0);
}

std::optional<std::string> MacBluetooth::machineName() {
    return permission() == BluetoothPermission::granted ? calls_->controllerName() : std::nullopt;
}

} // namespace tavero

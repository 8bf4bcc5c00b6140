#include "bluetooth/Bluetooth.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto readInterval = 30s;
constexpr auto settleTime = 1s; // until a reading tells the new state
constexpr auto attemptTime = 60s;

bool contains(const std::vector<BluetoothDevice>& devices, const std::string& address) {
    return std::any_of(devices.begin(), devices.end(),
                       [&](const BluetoothDevice& device) { return device.address == address; });
}

} // namespace

Bluetooth::Bluetooth(BluetoothServices services, Clock& clock, Settings& settings)
    : clock_(clock), settings_(settings), services_(std::move(services)) {
    updatePermission();
}

Bluetooth::~Bluetooth() = default;

void Bluetooth::refresh(std::function<void()> done) {
    if (!services_.control) {
        if (done) done();
        return;
    }
    services_.control->read([this, done = std::move(done)](BluetoothControl::Snapshot snapshot) {
        updatePermission();
        if (snapshot) take(std::move(*snapshot));
        if (done) done();
    });
}

void Bluetooth::surfaceAppeared() {
    ++surfaces_;
    updatePermission(); // the user may have changed it meanwhile
    loop_.reset();
    if (services_.control) runLoop();
}

void Bluetooth::surfaceDisappeared() {
    surfaces_ = std::max(surfaces_ - 1, 0);
    if (surfaces_ == 0) loop_.reset();
}

void Bluetooth::runLoop() {
    refresh([this] {
        if (surfaces_ > 0) loop_ = clock_.after(readInterval, [this] { runLoop(); });
    });
}

void Bluetooth::take(BluetoothSnapshot snapshot) {
    addSignals(snapshot);
    auto name = services_.control->machineName();
    if (snapshot_ != snapshot || machineName_ != name) {
        snapshot_ = snapshot;
        machineName_ = std::move(name);
        forgetSettledFailures();
        emit snapshotChanged();
    }
    if (services_.checkAlerts) services_.checkAlerts(snapshot);
    if (services_.recordHistory && settings_.get(keys::keepHistory))
        services_.recordHistory(snapshot);
}

// A signal of this moment, in place of the one that was read.
void Bluetooth::addSignals(BluetoothSnapshot& snapshot) {
    if (permission_ != BluetoothPermission::granted) return;
    for (BluetoothDevice& device : snapshot.connected) {
        if (!device.address) continue;
        if (const auto rssi = services_.control->rssi(*device.address)) device.rssi = rssi;
    }
}

void Bluetooth::requestPermission(std::function<void(BluetoothPermission)> done) {
    const auto tell = [this, done = std::move(done)] {
        updatePermission();
        if (done) done(permission_);
    };
    if (services_.control)
        services_.control->requestPermission(tell);
    else
        tell();
}

void Bluetooth::setConnected(bool connected, const BluetoothDevice& device,
                             std::function<void(bool)> done) {
    if (!done) done = [](bool) {};
    if (!services_.control || !device.address || busy_.contains(*device.address))
        return done(false);
    requestPermission([this, connected, address = *device.address,
                       done = std::move(done)](BluetoothPermission permission) {
        // While the system asked, the user may have clicked twice.
        if (permission != BluetoothPermission::granted || busy_.contains(address))
            return done(false);
        begin(connected, address, done);
    });
}

void Bluetooth::begin(bool connects, const std::string& address, std::function<void(bool)> done) {
    const std::int64_t number = ++lastAttempt_;
    attempts_[number] = {.address = address,
                         .connects = connects,
                         .done = std::move(done),
                         .timer =
                             clock_.after(attemptTime, [this, number] { settle(number, false); })};
    busy_.insert(address);
    setFailure(address, std::nullopt);
    emit busyChanged();
    const auto answered = [this, number](bool succeeded) { settle(number, succeeded); };
    if (connects)
        services_.control->connect(address, answered);
    else
        services_.control->disconnect(address, answered);
}

void Bluetooth::settle(std::int64_t number, bool succeeded) {
    const auto found = attempts_.find(number);
    if (found == attempts_.end() || found->second.succeeded) return; // an answer that came too late
    found->second.succeeded = succeeded;
    found->second.timer =
        clock_.after(settleTime, [this, number] { refresh([this, number] { end(number); }); });
}

void Bluetooth::end(std::int64_t number) {
    const Attempt attempt = std::move(attempts_.extract(number).mapped());
    const bool succeeded = attempt.succeeded == true;
    busy_.erase(attempt.address);
    if (!succeeded)
        setFailure(attempt.address,
                   attempt.connects ? BluetoothFailure::connect : BluetoothFailure::disconnect);
    forgetSettledFailures();
    emit busyChanged();
    attempt.done(succeeded);
}

std::optional<BluetoothFailure> Bluetooth::failure(const std::string& address) const {
    const auto found = failures_.find(address);
    return found == failures_.end() ? std::nullopt : std::optional(found->second);
}

void Bluetooth::setFailure(const std::string& address, std::optional<BluetoothFailure> failure) {
    if (this->failure(address) == failure) return;
    if (failure)
        failures_[address] = *failure;
    else
        failures_.erase(address);
    emit failuresChanged();
}

// The user may have connected or disconnected it by other means.
void Bluetooth::forgetSettledFailures() {
    if (!snapshot_) return;
    const auto isSettled = [&](const auto& entry) {
        const bool isConnected = contains(snapshot_->connected, entry.first);
        return isConnected == (entry.second == BluetoothFailure::connect);
    };
    if (std::erase_if(failures_, isSettled) > 0) emit failuresChanged();
}

void Bluetooth::updatePermission() {
    if (!services_.control) return;
    const BluetoothPermission now = services_.control->permission();
    if (std::exchange(permission_, now) != now) emit permissionChanged();
}

} // namespace tavero

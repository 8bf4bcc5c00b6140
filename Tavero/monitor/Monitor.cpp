#include "monitor/Monitor.h"

#include "monitor/NotchTexts.h"
#include "monitor/PowerShares.h"
#include "monitor/SavingEnergy.h"
#include "presentation/MetricReading.h"
#include "settings/SettingsFormat.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto menuBarInterval = 5s;
constexpr double longestAppSeconds = 120;
constexpr auto quitPollInterval = 200ms;
constexpr int mostQuitPolls = 15;
constexpr auto toastTime = 3s;
constexpr auto bluetoothIntervalShown = 60s;
constexpr auto bluetoothIntervalHidden = 600s;

// Whether that changed anything.
template <typename Value>
bool assign(Value& field, Value value) {
    if (field == value) return false;
    field = std::move(value);
    return true;
}

} // namespace

// The power source stays on this thread; everything else goes to the engine.
Monitor::Monitor(Machine machine, std::unique_ptr<Worker> worker, Clock& clock, Settings& settings,
                 MonitorServices services)
    : clock_(clock), settings_(settings), services_(std::move(services)),
      systemName_(machine.systemName), power_(std::move(machine.power)),
      engine_(readers(std::move(machine))), worker_(std::move(worker)) {}

Monitor::Monitor(Readers readers, std::unique_ptr<PowerSource> power,
                 std::unique_ptr<Worker> worker, Clock& clock, Settings& settings,
                 MonitorServices services)
    : clock_(clock), settings_(settings), services_(std::move(services)), power_(std::move(power)),
      engine_(std::move(readers)), worker_(std::move(worker)) {}

Monitor::~Monitor() = default;

ThermalState Monitor::thermalState() const {
    return power_ ? power_->thermalState() : ThermalState::nominal;
}

void Monitor::start() {
    if (isRunning_ && !isPreview_) return;
    isPreview_ = false;
    startServices();
    if (std::exchange(isRunning_, true)) return;
    takePass();
}

void Monitor::startPreview() {
    if (isRunning_) return;
    isPreview_ = true;
    isRunning_ = true;
    takePass();
}

void Monitor::startServices() {
    if (services_.startAudio) services_.startAudio();
    if (services_.requestNotificationAuthorization) services_.requestNotificationAuthorization();
    if (services_.refreshBluetooth) refreshBluetooth();
}

void Monitor::refreshBluetooth() {
    services_.refreshBluetooth();
    const bool isShown = settings_.get(keys::menuBarBluetooth);
    bluetoothAlertLoop_ = clock_.after(isShown ? bluetoothIntervalShown : bluetoothIntervalHidden,
                                       [this] { refreshBluetooth(); });
}

void Monitor::takePass() {
    sleeper_.reset();
    const Cadence::Pass pass = cadence_.nextPass();
    worker_->call(
        [this, pass, now = clock_.now()] {
            return engine_.sample(pass.detail, pass.topApps, pass.threads, now);
        },
        [this](LiveSnapshot snapshot) {
            apply(std::move(snapshot));
            pause();
        });
}

void Monitor::pause() {
    const auto wait =
        cadence_.wait(settings_.get(keys::refreshSeconds), savingEnergy(power_.get(), settings_));
    sleeper_ = clock_.after(wait, [this] { takePass(); });
}

void Monitor::wakeUp() {
    // During a pass there is no wait to cut short.
    if (sleeper_) sleeper_ = clock_.after(0s, [this] { takePass(); });
}

void Monitor::viewAppeared(ViewKind kind) {
    if (cadence_.appeared(kind)) wakeUp();
}

void Monitor::viewDisappeared(ViewKind kind) { cadence_.disappeared(kind); }

bool Monitor::quit(const std::string& bundlePath) {
    if (!services_.askToQuit) return false;
    std::optional<std::function<bool()>> hasEnded = services_.askToQuit(bundlePath);
    if (!hasEnded) return false;
    QuitRequest request{.hasEnded = std::move(*hasEnded), .pollsLeft = mostQuitPolls};
    if (snapshot_)
        for (const AppUsage& row : snapshot_->apps)
            if (row.bundlePath == bundlePath) request.memory = row.memory;
    refreshSoon(quitPolls_.emplace(quitPolls_.end()), std::move(request));
    return true;
}

void Monitor::refreshSoon(std::list<Timer>::iterator poll, QuitRequest request) {
    *poll = clock_.after(quitPollInterval, [this, poll, request = std::move(request)]() mutable {
        const bool hasEnded = request.hasEnded();
        if (!hasEnded && --request.pollsLeft > 0) return refreshSoon(poll, std::move(request));
        quitPolls_.erase(poll);
        if (hasEnded && request.memory > 0)
            show(format(settings_).bytes(request.memory) + " freed");
        wakeUp();
    });
}

void Monitor::apply(LiveSnapshot snapshot) {
    // History and alerts see the raw snapshot: on a light pass it has no apps.
    if (!isPreview_) {
        recordHistory(snapshot);
        if (services_.checkAlerts) services_.checkAlerts(snapshot);
    }
    if (snapshot.memory) physicalMemory_ = snapshot.memory->total;
    graphs_.feed(snapshot);
    if (!snapshot.apps.empty()) recordApps(snapshot);
    carryOver(snapshot);
    presentApps(snapshot);
    snapshot_ = std::move(snapshot);
    emit snapshotChanged();
    updateMenuBar(*snapshot_);
}

// A light pass leaves out what is expensive; the figures of the last full one stand until the next.
void Monitor::carryOver(LiveSnapshot& next) const {
    if (!snapshot_ || !next.apps.empty()) return;
    const LiveSnapshot& last = *snapshot_;
    next.apps = last.apps;
    next.processCount = last.processCount;
    const auto keep = [](auto& value, const auto& lastValue) {
        if (!value) value = lastValue;
    };
    keep(next.gpu, last.gpu);
    keep(next.battery, last.battery);
    keep(next.systemWatts, last.systemWatts);
    keep(next.cpuTemperature, last.cpuTemperature);
    keep(next.diskAvailable, last.diskAvailable);
    keep(next.diskCapacity, last.diskCapacity);
    keep(next.sound, last.sound);
    if (next.fanRPM.empty()) next.fanRPM = last.fanRPM;
}

void Monitor::recordApps(const LiveSnapshot& snapshot) {
    systemIssue_.update(snapshot);
    appLogs_.recordCPU(snapshot);
    appLogs_.recordMemory(snapshot);
}

// The rows as surfaces show them: with their share of the power, their averages, and the system's
// own row only while there is something to say about it.
void Monitor::presentApps(LiveSnapshot& next) const {
    next.apps = systemIssue_.present(withWatts(std::move(next.apps), powerDraw(next)), systemName_);
    for (AppUsage& row : next.apps)
        row = appLogs_.withAverages(std::move(row), physicalMemory_, clock_.now());
}

void Monitor::recordHistory(const LiveSnapshot& snapshot) {
    if (!services_.recordHistory || !settings_.get(keys::keepHistory)) return;
    std::optional<double> appSeconds;
    if (!snapshot.apps.empty()) {
        // A clock that was set back must not take time away.
        if (lastAppSample_)
            appSeconds =
                std::clamp(secondsBetween(*lastAppSample_, snapshot.date), 0.0, longestAppSeconds);
        lastAppSample_ = snapshot.date;
    }
    services_.recordHistory(snapshot, appSeconds);
}

void Monitor::updateMenuBar(const LiveSnapshot& snapshot) {
    const bool isRecent =
        snapshot.date >= menuBarUpdatedAt_ && snapshot.date < menuBarUpdatedAt_ + menuBarInterval;
    if (isRecent && menuBarSnapshot_) return;
    menuBarUpdatedAt_ = snapshot.date;
    menuBarSnapshot_ = snapshot;
    menuBarGraphs_ = graphs_;
    emit menuBarChanged();

    const ThermalState thermal = power_ ? power_->thermalState() : ThermalState::nominal;
    if (assign(strain_, detectStrain(snapshot, thermal, format(settings_)))) emit strainChanged();
    const bool isNewCPU = assign(notchCPU_, tavero::notchCPU(snapshot));
    const bool isNewMemory = assign(notchMemory_, tavero::notchMemory(snapshot));
    if (isNewCPU || isNewMemory) emit notchTextsChanged();
}

void Monitor::show(std::string toast) {
    if (assign(toast_, std::optional(std::move(toast)))) emit toastChanged();
    toastTimer_ = clock_.after(toastTime, [this] {
        if (assign(toast_, {})) emit toastChanged();
    });
}

void Monitor::setVolume(double volume) {
    if (services_.setVolume) services_.setVolume(volume);
    if (!snapshot_ || !snapshot_->sound) return;
    SoundSnapshot sound = *snapshot_->sound;
    sound.volume = volume;
    if (volume > 0 && sound.isMuted) {
        if (services_.setMuted) services_.setMuted(false);
        sound.isMuted = false;
    }
    if (snapshot_->sound == sound) return;
    snapshot_->sound = std::move(sound);
    emit snapshotChanged();
}

void Monitor::audioDevicesChanged() {
    ++audioDevicesVersion_;
    emit audioDevicesVersionChanged();
    if (snapshot_ && snapshot_->sound && services_.readSound) {
        snapshot_->sound = services_.readSound();
        emit snapshotChanged();
    }
    if (services_.rescanAudioApps) services_.rescanAudioApps();
}

} // namespace tavero

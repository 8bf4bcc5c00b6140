#include "alerts/AlertCenter.h"

#include "alerts/AlertSection.h"
#include "alerts/QuietHours.h"
#include "settings/SettingsFormat.h"

#include <chrono>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto crashInterval = 30s;
constexpr auto microphoneInterval = 10s;

AlertMemory storedMemory(const Settings& settings) {
    const Bytes bytes = settings.get(keys::alertMemory);
    const std::string json(bytes.begin(), bytes.end());
    return AlertMemory::decoded(json).value_or(AlertMemory{});
}

Notification notification(const SystemAlert& alert) {
    return {.key = alert.key,
            .title = alert.title,
            .body = alert.body,
            .section = std::string(rawValue(section(alert.kind))),
            .bundlePath = alert.bundlePath.value_or("")};
}

} // namespace

AlertCenter::AlertCenter(AlertServices services, std::unique_ptr<Worker> worker, Clock& clock,
                         Settings& settings)
    : clock_(clock), settings_(settings), services_(std::move(services)),
      rules_(enabledKinds(settings)), lastCrashScan_(clock.now()), worker_(std::move(worker)) {
    rules_.memory = storedMemory(settings_);
    rules_.prune(clock_.now());
    connect(&settings_, &Settings::changed, this, [this](const QString& name) {
        if (name.startsWith("alert.")) settingsChanged();
    });
    if (services_.notifications)
        services_.notifications->setHandler(
            [this](NotificationAction action, const Notification& about) {
                handle(action, about);
            });
}

AlertCenter::~AlertCenter() = default;

std::set<AlertKind> AlertCenter::enabledKinds(const Settings& settings) {
    std::set<AlertKind> enabled;
    for (const AlertKindEntry& kind : allAlertKinds)
        if (settings.get(keys::alert(kind.kind))) enabled.insert(kind.kind);
    return enabled;
}

void AlertCenter::settingsChanged() { rules_.enabled = enabledKinds(settings_); }

void AlertCenter::check(const LiveSnapshot& snapshot) {
    if (snapshot.memory) physicalMemory_ = snapshot.memory->total;
    const std::set<std::string> active = rules_.memory.active;
    send(rules_.evaluate(snapshot, context(), clock_.now()));
    connectionChanged(snapshot.connection != ConnectionKind::offline);
    checkCrashes();
    checkMicrophone();
    // An alert that has cleared sends nothing, and must not be forgotten.
    if (rules_.memory.active != active) saveMemory();
}

void AlertCenter::check(const BluetoothSnapshot& snapshot) {
    send(rules_.evaluate(snapshot, clock_.now()));
}

AlertRules::Context AlertCenter::context() const {
    AlertRules::Context context{.physicalMemory = physicalMemory_,
                                .fahrenheit = format(settings_).fahrenheit};
    if (services_.thermalState) context.thermalState = services_.thermalState();
    if (const auto booted = services_.bootTime ? services_.bootTime() : std::nullopt)
        context.uptime = secondsBetween(*booted, clock_.now());
    return context;
}

// Being offline is judged again on every look: it counts only after a while.
void AlertCenter::connectionChanged(bool online) {
    const bool changed = std::exchange(online_, online) != online;
    if (changed || !online) send(rules_.evaluateOnline(online, clock_.now()));
}

void AlertCenter::checkCrashes() {
    if (!services_.crashes || !rules_.enabled.contains(AlertKind::appCrashed)) return;
    if (clock_.now() - lastCrashScan_ < crashInterval) return;
    lastCrashScan_ = clock_.now();
    send(rules_.evaluateCrashes(services_.crashes->newReports(clock_.now()), clock_.now()));
}

// Slow to read, so it must not hold up the samples.
void AlertCenter::checkMicrophone() {
    if (!services_.microphoneApps || !rules_.enabled.contains(AlertKind::microphone)) return;
    if (readingMicrophone_ || clock_.now() < lastMicrophoneCheck_ + microphoneInterval) return;
    readingMicrophone_ = true;
    lastMicrophoneCheck_ = clock_.now();
    worker_->call([read = services_.microphoneApps] { return read(); },
                  [this](const std::vector<std::string>& apps) {
                      readingMicrophone_ = false;
                      send(rules_.evaluateMicrophone(apps, clock_.now()));
                  });
}

// The one road of every alert.
void AlertCenter::send(const std::vector<SystemAlert>& alerts) {
    for (const SystemAlert& alert : alerts) {
        saveMemory(); // before the delivery, so that a crash does not lead to the same alert twice
        if (settings_.get(keys::quietHours) &&
            QuietHours::contains(clock_.now(), Calendar::current()))
            continue;
        if (services_.showInNotch && services_.showInNotch(alert)) continue;
        deliver(alert);
    }
}

void AlertCenter::saveMemory() {
    const std::string json = rules_.memory.encoded();
    settings_.set(keys::alertMemory, Bytes(json.begin(), json.end()));
}

void AlertCenter::deliver(const SystemAlert& alert) {
    if (!services_.notifications) return;
    services_.notifications->deliver(notification(alert), [this](Notifications::Error error) {
        if (error) setError(std::move(error));
    });
}

void AlertCenter::setError(std::optional<std::string> error) {
    lastError_ = std::move(error);
    emit lastErrorChanged();
}

void AlertCenter::handle(NotificationAction action, const Notification& about) {
    if (action == NotificationAction::quit) {
        if (!about.bundlePath.empty() && services_.quitApp) services_.quitApp(about.bundlePath);
        return;
    }
    pendingSection_ = sectionNamed(about.section).value_or(Section::overview);
    emit pendingSectionChanged();
}

std::optional<Section> AlertCenter::takePendingSection() {
    return std::exchange(pendingSection_, std::nullopt);
}

void AlertCenter::requestAuthorization() {
    if (!services_.notifications) return;
    services_.notifications->requestAuthorization([this](Notifications::Error error) {
        if (error) setError(std::move(error));
        refreshAuthorization();
    });
}

void AlertCenter::refreshAuthorization() {
    if (!services_.notifications) return;
    services_.notifications->readAuthorization([this](NotificationAuthorization authorization) {
        if (std::exchange(authorization_, authorization) != authorization)
            emit authorizationChanged();
    });
}

std::string AlertCenter::sendTest() {
    const SystemAlert test{.kind = AlertKind::appCPU,
                           .key = "test",
                           .title = "Alerts are on",
                           .body = "This is how Tavero tells you when something needs attention."};
    if (services_.showInNotch && services_.showInNotch(test)) return "Shown in the notch";
    const bool mayNotify = authorization_ == NotificationAuthorization::authorized ||
                           authorization_ == NotificationAuthorization::provisional;
    if (!mayNotify) return "Notifications are off for Tavero";
    deliver(test);
    return "Sent. If you don't see it, check Focus.";
}

} // namespace tavero

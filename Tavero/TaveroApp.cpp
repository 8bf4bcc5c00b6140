#include "TaveroApp.h"

#include "bluetooth/DeviceKind.h"
#include "sound/MicrophoneReader.h"
#include "sound/SoundController.h"
#include "time/ThreadWorker.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace tavero {

namespace {

std::unique_ptr<TaskQueue> activityQueue(const AudioSystem& audio) {
    return audio.makeQueue ? audio.makeQueue() : nullptr;
}

} // namespace

TaveroApp::TaveroApp(AppWorld world, Clock& clock)
    : appearance_(hostAppearance()), theme_(settings_, *appearance_),
      systemName_(world.machine.systemName), system_(std::move(world.machine.system)),
      audio_(world.machine.audio),
      history_(world.historyFile, std::make_unique<ThreadWorker>(), clock, settings_),
      alerts_(alertServices(world), std::make_unique<ThreadWorker>(), clock, settings_),
      bluetooth_({.control = std::move(world.bluetooth),
                  .checkAlerts = [this](const BluetoothSnapshot& now) { alerts_.check(now); },
                  .recordHistory =
                      [this](const BluetoothSnapshot& now) { history_.recordBluetooth(now); }},
                 clock, settings_),
      router_(audio_, activityQueue(audio_), clock, settings_),
      monitor_(std::move(world.machine), std::make_unique<ThreadWorker>(), clock, settings_,
               monitorServices(world)),
      mainQueue_(clock), icons_(hostAppIcons()),
      mainWindow_(monitor_, settings_, theme_,
                  {.surroundings = [this] { return surroundings(); }, .icons = icons_.get()}),
      dropdown_(monitor_, settings_, theme_,
                {.openMain = [this](Section section) { open(section); },
                 .quit = &QGuiApplication::quit,
                 .surroundings = [this] { return surroundings(); }}),
      statusItems_(hostStatusItems(*appearance_, clock)),
      menuBar_(monitor_, settings_, *statusItems_,
               {.open = [this](ItemKind, Section section,
                               QPoint click) { dropdown_.open(section, click); },
                .openWindow = [this] { openMainWindow(); },
                .quit = &QGuiApplication::quit}) {
    if (audio_.objects)
        audioWatcher_.emplace(*audio_.objects, mainQueue_,
                              [this] { monitor_.audioDevicesChanged(); });
    QObject::connect(&alerts_, &AlertCenter::pendingSectionChanged, &mainWindow_, [this] {
        if (const std::optional<Section> section = alerts_.takePendingSection()) open(*section);
    });
    QObject::connect(&bluetooth_, &Bluetooth::snapshotChanged, &menuBar_,
                     [this] { showBatteries(); });
}

AlertServices TaveroApp::alertServices(AppWorld& world) {
    return {.notifications = std::move(world.notifications),
            .crashes = std::move(world.crashes),
            .microphoneApps = microphoneApps(),
            .thermalState = [this] { return monitor_.thermalState(); },
            .bootTime = [this] { return system_ ? system_->bootTime() : std::nullopt; },
            .quitApp = [this](const std::string& bundlePath) { monitor_.quit(bundlePath); }};
}

// Called on a worker, so with sources of its own to keep.
std::function<std::vector<std::string>()> TaveroApp::microphoneApps() const {
    if (!audio_.objects) return {};
    return [objects = audio_.objects, processes = audio_.processes] {
        return MicrophoneReader::appsUsingInput(*objects, *processes);
    };
}

MonitorServices TaveroApp::monitorServices(AppWorld& world) {
    MonitorServices services{
        .recordHistory =
            [this](const LiveSnapshot& snapshot, std::optional<double> appSeconds) {
                history_.record(snapshot, appSeconds);
            },
        .checkAlerts = [this](const LiveSnapshot& snapshot) { alerts_.check(snapshot); },
        .requestNotificationAuthorization = [this] { alerts_.requestAuthorization(); },
        .refreshBluetooth = [this] { bluetooth_.refresh(); },
        .askToQuit = std::move(world.askToQuit)};
    if (!audio_.objects) return services;
    services.startAudio = [this] { router_.start(); };
    services.readSound = [this] { return SoundController::read(*audio_.objects); };
    services.setVolume = [this](double volume) {
        SoundController::setVolume(*audio_.objects, volume);
    };
    services.setMuted = [this](bool muted) { SoundController::setMuted(*audio_.objects, muted); };
    services.rescanAudioApps = [this] { router_.refresh(true); };
    return services;
}

Surroundings TaveroApp::surroundings() const {
    return {.displays = QGuiApplication::screens().size(), .systemName = systemName_};
}

void TaveroApp::showBatteries() {
    std::vector<BluetoothBattery> batteries;
    for (const BluetoothDevice& device : bluetooth_.snapshot()->connected)
        if (const auto lowest = device.lowestBattery())
            batteries.push_back({.name = device.name,
                                 .symbol = std::string(DeviceKind::symbol(device)),
                                 .percent = lowest->percent});
    menuBar_.setBluetooth(batteries);
}

void TaveroApp::open(Section section) {
    settings_.set(keys::lastSection, std::string(rawValue(section)));
    openMainWindow();
}

void TaveroApp::launch() {
    menuBar_.show();
    if (settings_.get(keys::openWindowAtLaunch)) openMainWindow();
    monitor_.start();
}

void prepareApplication() {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setOrganizationName("Tavero");
    QGuiApplication::setOrganizationDomain("brimfold.com");
    QGuiApplication::setApplicationName("tavero");
    QGuiApplication::setApplicationDisplayName("Tavero");
    QGuiApplication::setDesktopFileName("com.brimfold.tavero");
}

} // namespace tavero

#pragma once

#include "alerts/AlertCenter.h"
#include "bluetooth/Bluetooth.h"
#include "components/Theme.h"
#include "desktop/AppIcons.h"
#include "desktop/Appearance.h"
#include "desktop/StatusItems.h"
#include "dropdown/Dropdown.h"
#include "insights/History.h"
#include "menubar/MenuBar.h"
#include "monitor/Monitor.h"
#include "platform/Machine.h"
#include "settings/Settings.h"
#include "sound/AppAudioRouter.h"
#include "sound/AudioDeviceWatcher.h"
#include "time/Clock.h"
#include "time/ClockQueue.h"
#include "window/MainWindow.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// What the application runs on.
struct AppWorld {
    Machine machine;
    // Asks an app politely to quit, see MonitorServices.
    std::function<std::optional<std::function<bool()>>(const std::string&)> askToQuit;
    std::unique_ptr<Notifications> notifications; // null: none
    std::unique_ptr<CrashReports> crashes;        // null: nobody tells of crashes
    std::unique_ptr<BluetoothControl> bluetooth;  // null: none
    std::optional<std::filesystem::path>
        historyFile; // absent: history lasts as long as the program
};

// The application: one monitor over one machine, what listens to it, and the surfaces that show it.
class TaveroApp {
  public:
    // The clock must outlive the application.
    TaveroApp(AppWorld world, Clock& clock);

    // Puts the items into the menu bar, opens what the user wants to see at launch and begins to
    // sample.
    void launch();
    void openMainWindow() { mainWindow_.open(); }

  private:
    AlertServices alertServices(AppWorld& world);
    MonitorServices monitorServices(AppWorld& world);
    std::function<std::vector<std::string>()> microphoneApps() const;
    Surroundings surroundings() const;
    void showBatteries();
    void open(Section section);

    Settings settings_;
    std::unique_ptr<Appearance> appearance_;
    Theme theme_;
    std::string systemName_;
    std::unique_ptr<SystemSource> system_; // may be null
    AudioSystem audio_;                    // may be empty
    History history_;
    AlertCenter alerts_;
    Bluetooth bluetooth_;
    AppAudioRouter router_;
    Monitor monitor_;
    ClockQueue mainQueue_;
    std::optional<AudioDeviceWatcher> audioWatcher_;
    std::unique_ptr<AppIcons> icons_;
    MainWindow mainWindow_;
    Dropdown dropdown_;
    std::unique_ptr<StatusItems> statusItems_;
    MenuBar menuBar_;
};

// What both programs with a display, the real one and the demo, have in common: they wait in the
// event loop with no window open, and go by Tavero's name.
void prepareApplication();

} // namespace tavero

#pragma once

#include "components/Theme.h"
#include "desktop/AppIcons.h"
#include "desktop/Appearance.h"
#include "monitor/Monitor.h"
#include "monitor/MonitorServices.h"
#include "platform/Machine.h"
#include "settings/Settings.h"
#include "time/Clock.h"
#include "window/MainWindow.h"

#include <memory>

namespace tavero {

// The application: one monitor over one machine, and the surfaces that show it.
class TaveroApp {
  public:
    // The clock must outlive the application.
    TaveroApp(Machine machine, Clock& clock, MonitorServices services);

    // Opens what the user wants to see at launch and begins to sample.
    void launch();
    void openMainWindow() { mainWindow_.open(); }

  private:
    Settings settings_;
    std::unique_ptr<Appearance> appearance_;
    Theme theme_;
    Monitor monitor_;
    std::unique_ptr<AppIcons> icons_;
    MainWindow mainWindow_;
};

// What both programs with a display, the real one and the demo, have in common: they wait in the
// event loop with no window open, and go by Tavero's name.
void prepareApplication();

} // namespace tavero

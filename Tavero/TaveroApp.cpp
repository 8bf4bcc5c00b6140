#include "TaveroApp.h"

#include "time/ThreadWorker.h"

#include <QGuiApplication>

#include <utility>

namespace tavero {

TaveroApp::TaveroApp(Machine machine, Clock& clock, MonitorServices services)
    : appearance_(hostAppearance()), theme_(settings_, *appearance_),
      monitor_(std::move(machine), std::make_unique<ThreadWorker>(), clock, settings_,
               std::move(services)),
      icons_(hostAppIcons()), mainWindow_(monitor_, settings_, theme_, {.icons = icons_.get()}) {}

void TaveroApp::launch() {
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

#pragma once

#include "components/Theme.h"
#include "desktop/AppIcons.h"
#include "monitor/Monitor.h"
#include "presentation/MetricStats.h"
#include "settings/Settings.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace tavero {

// What the main window is told of the machine and the desktop. Any of it may be left out.
struct WindowFacts {
    QString summary; // names the machine in a line
    // Asked on every update. Without it the cards know the number of displays and no more.
    std::function<Surroundings()> surroundings;
    AppIcons* icons = nullptr; // must outlive the window; without it apps show tiles
    std::string ownBundlePath; // where Tavero runs from, if that is an app's
};

// The main window, which exists only while it is open: opening makes the engine, the view-models
// and the window, closing ends them all and gives their memory back. While the window is on screen,
// and not when it is hidden or minimised, the monitor knows of it.
//
// Needs a QGuiApplication. Main thread only.
class MainWindow : public QObject {
    Q_OBJECT

  public:
    // The first three must outlive the window.
    MainWindow(Monitor& monitor, const Settings& settings, Theme& theme, WindowFacts facts = {});
    ~MainWindow() override;

    // Opens the window; one that is open already comes to the front.
    void open();
    void close();
    bool isOpen() const { return surface_ != nullptr; }

  private:
    struct Surface;

    void followVisibility();
    void closeIfHidden();
    void setOnScreen(bool isOnScreen);
    void bringToFront();

    Monitor& monitor_;
    const Settings& settings_;
    Theme& theme_;
    WindowFacts facts_;
    bool isOnScreen_ = false;
    std::unique_ptr<Surface> surface_;
};

} // namespace tavero

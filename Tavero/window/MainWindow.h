#pragma once

#include "components/Theme.h"
#include "monitor/Monitor.h"
#include "presentation/MetricStats.h"
#include "settings/Settings.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace tavero {

// The main window, which exists only while it is open: opening makes the engine, the view-models
// and the window, closing ends them all and gives their memory back. While the window is on screen,
// and not when it is hidden or minimised, the monitor knows of it.
//
// Needs a QGuiApplication. Main thread only.
class MainWindow : public QObject {
    Q_OBJECT

  public:
    // `summary` names the machine in a line; it may be empty. `surroundings` may be empty too: then
    // the cards know the number of displays and no more. The others must outlive the window.
    MainWindow(Monitor& monitor, const Settings& settings, Theme& theme, QString summary = {},
               std::function<Surroundings()> surroundings = {});
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
    QString summary_;
    std::function<Surroundings()> surroundings_;
    bool isOnScreen_ = false;
    std::unique_ptr<Surface> surface_;
};

} // namespace tavero

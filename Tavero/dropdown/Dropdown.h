#pragma once

#include "components/Theme.h"
#include "monitor/Monitor.h"
#include "presentation/MetricStats.h"
#include "presentation/Section.h"
#include "settings/Settings.h"

#include <QObject>
#include <QPoint>

#include <functional>
#include <memory>

namespace tavero {

// What the panel asks of the application.
struct DropdownEvents {
    std::function<void(Section)> openMain; // the main window, on this page
    std::function<void()> quit;
    std::function<Surroundings()> surroundings; // asked on every update; may be left out
};

// The panel under a menu bar item, which exists only while it is open: opening makes the engine,
// the model and the window, closing ends them all and gives their memory back. It closes when it
// loses the keyboard and on Escape. The monitor knows of it while it is open.
//
// Needs a QGuiApplication. Main thread only.
class Dropdown : public QObject {
    Q_OBJECT

  public:
    // The first three must outlive the dropdown.
    Dropdown(Monitor& monitor, const Settings& settings, Theme& theme, DropdownEvents events = {});
    ~Dropdown() override;

    // Opens the panel on a section, by the click that asked for it; null if that is unknown. What
    // is open on the same section closes instead, as another click on an item should.
    void open(Section section, QPoint click);
    void close();
    bool isOpen() const { return surface_ != nullptr; }

  private:
    struct Surface;

    void place(QPoint click);
    void followFocus();
    void closeSoon();

    Monitor& monitor_;
    const Settings& settings_;
    Theme& theme_;
    DropdownEvents events_;
    std::unique_ptr<Surface> surface_;
};

} // namespace tavero

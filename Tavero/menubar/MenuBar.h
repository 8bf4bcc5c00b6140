#pragma once

#include <QObject> // first, for moc 6.4 loses its way in <concepts> otherwise

#include "desktop/StatusItems.h"
#include "menubar/ItemContent.h"
#include "monitor/Monitor.h"
#include "presentation/Section.h"
#include "settings/Settings.h"

#include <QPoint>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// What stands behind an item.
enum class ItemKind { main, sound, bluetooth, metric };

// What the items ask of the application. An empty entry does nothing.
struct MenuBarActions {
    // A click: open the item's panel. The section is the page that belongs to the item; the point
    // is where on the screen it was, null if unknown.
    std::function<void(ItemKind, Section, QPoint)> open;
    std::function<void()> openWindow;
    std::function<void()> quit;
};

// Tavero's items in the menu bar: the main one, one a metric, sound and Bluetooth. Follows the
// monitor, at the slow pace that it keeps for the menu bar, and the settings; draws an item only if
// it shows something new. Main thread only.
class MenuBar : public QObject {
    Q_OBJECT

  public:
    // All must outlive the menu bar.
    MenuBar(Monitor& monitor, Settings& settings, StatusItems& bar, MenuBarActions actions);
    ~MenuBar() override;

    // Puts the items into the bar. The main one stays from then on.
    void show();

    // Whether a new version waits.
    void setUpdateReady(bool isReady);
    // The connected devices that tell their charge, each with its lowest battery.
    void setBluetooth(const std::vector<BluetoothBattery>& devices);

  private:
    struct Item;

    void update();
    void updateSound();
    void update(Item& item);
    void push(Item& item);
    bool isWanted(const Item& item) const;
    ItemContent content(const Item& item) const;
    StatusItemEvents events(Item& item);
    std::vector<StatusMenuEntry> menu(const Item& item) const;

    Monitor& monitor_;
    Settings& settings_;
    StatusItems& bar_;
    MenuBarActions actions_;
    bool isShown_ = false;
    bool updateReady_ = false;
    std::optional<BluetoothBattery> lowestBattery_;
    std::vector<Item> items_; // in the order in which they enter the bar; never grows
};

} // namespace tavero

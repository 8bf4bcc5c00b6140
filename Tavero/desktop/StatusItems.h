#pragma once

#include <QImage>
#include <QPoint>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavero {

class Appearance;
class Clock;

// What a status item shows.
struct StatusPicture {
    QImage wide;            // as a menu bar shows it, 18 points high; device pixel ratio 2
    QImage square;          // the same for hosts whose cells are square; device pixel ratio 2
    bool isTemplate = true; // black ink on clear, which the host tints like its own text
    std::string text;       // what a screen reader says and a tooltip shows

    bool operator==(const StatusPicture&) const = default;
};

// One line of an item's small menu, for hosts that show menus only.
struct StatusMenuEntry {
    std::string title;            // empty is a separator
    std::function<void()> choose; // empty for a line that only tells something
};

// What an item asks of its owner, on the main thread. The owner may remove the item from within.
struct StatusItemEvents {
    std::function<void(QPoint)> open; // a click; where on the screen it was, null if unknown
    std::function<std::vector<StatusMenuEntry>()> menu;
    std::function<void()> removed; // the user took it out of the bar by the system's means
};

// An item in the bar. It goes when this object does.
class StatusItem {
  public:
    virtual ~StatusItem() = default;

    // Cheap if the picture is the one that already shows.
    virtual void setPicture(const StatusPicture& picture) = 0;
};

// The bar of the desktop. It must outlive its items. Main thread only.
class StatusItems {
  public:
    virtual ~StatusItems() = default;

    // `id` is stable ("cpu"), so that the desktop can remember where the user put the item. Where
    // it doesn't, a later item stands to the left of an earlier one.
    virtual std::unique_ptr<StatusItem> add(std::string id, std::string title,
                                            StatusItemEvents events) = 0;
};

// The bar of this desktop; both must outlive it. Needs a QGuiApplication. Where nothing shows
// status items, a strip of Tavero's own does, so that it is never without a door. Defined by the
// one platform that is linked in.
std::unique_ptr<StatusItems> hostStatusItems(const Appearance& appearance, Clock& clock);

} // namespace tavero

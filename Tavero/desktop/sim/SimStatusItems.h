#pragma once

#include "desktop/StatusItems.h"

#include <list>
#include <memory>
#include <string>

namespace tavero {

// A bar that a test or the demo looks at, and whose items it clicks by calling their events.
class SimStatusItems final : public StatusItems {
  public:
    struct Item {
        std::string id;
        std::string title;
        StatusItemEvents events;
        StatusPicture picture;
        int changes = 0; // times that it got another picture
    };

    std::list<Item> items; // those that are in the bar, in the order in which they were added

    // The item with this id; null if it is not in the bar.
    Item* find(const std::string& id);

    std::unique_ptr<StatusItem> add(std::string id, std::string title,
                                    StatusItemEvents events) override;
};

} // namespace tavero

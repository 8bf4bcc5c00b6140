#pragma once

#include "desktop/StatusItems.h"
#include "desktop/mac/MacStatusBar.h"

#include <memory>
#include <string>

namespace tavero {

// A picture as the menu bar of macOS takes it.
MacStatusPicture macPicture(const StatusPicture& picture);

// Status items in the menu bar of macOS, which shows the wide pictures, keeps the user's order and
// draws no menus of ours.
class MacStatusItems final : public StatusItems {
  public:
    explicit MacStatusItems(MakeMacStatusItem makeItem);

    std::unique_ptr<StatusItem> add(std::string id, std::string title,
                                    StatusItemEvents events) override;

  private:
    MakeMacStatusItem makeItem_;
};

} // namespace tavero

#include "desktop/sim/SimStatusItems.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

class SimStatusItem final : public StatusItem {
  public:
    SimStatusItem(std::list<SimStatusItems::Item>& items,
                  std::list<SimStatusItems::Item>::iterator item)
        : items_(items), item_(item) {}
    ~SimStatusItem() override { items_.erase(item_); }

    void setPicture(const StatusPicture& picture) override {
        if (item_->picture == picture) return;
        item_->picture = picture;
        ++item_->changes;
    }

  private:
    std::list<SimStatusItems::Item>& items_;
    std::list<SimStatusItems::Item>::iterator item_;
};

} // namespace

SimStatusItems::Item* SimStatusItems::find(const std::string& id) {
    const auto item = std::find_if(items.begin(), items.end(),
                                   [&](const Item& candidate) { return candidate.id == id; });
    return item == items.end() ? nullptr : &*item;
}

std::unique_ptr<StatusItem> SimStatusItems::add(std::string id, std::string title,
                                                StatusItemEvents events) {
    items.push_back({.id = std::move(id), .title = std::move(title), .events = std::move(events)});
    return std::make_unique<SimStatusItem>(items, std::prev(items.end()));
}

} // namespace tavero

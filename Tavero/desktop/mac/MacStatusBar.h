#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavero {

// The menu bar of macOS, without Qt: what it takes and what it tells, in plain values.

struct MacStatusPicture {
    int width = 0; // pixels
    int height = 0;
    double scale = 1;               // pixels a point
    std::vector<std::uint8_t> rgba; // 4 bytes a pixel, alpha multiplied in, line by line
    bool isTemplate = true;         // the system tints it
    std::string text;               // for VoiceOver and the tooltip
};

// Called on the main thread, from its run loop.
struct MacStatusEvents {
    // A click, and where on the screen the middle of the item is: in points from the top left of
    // the screen that has the menu bar's origin.
    std::function<void(int x, int y)> clicked;
    std::function<void()> removed; // dragged out of the bar
};

// An item in the menu bar. It goes when this object does.
class MacStatusItem {
  public:
    virtual ~MacStatusItem() = default;

    virtual void show(const MacStatusPicture& picture) = 0;
};

using MakeMacStatusItem = std::function<std::unique_ptr<MacStatusItem>(
    const std::string& id, const std::string& title, MacStatusEvents events)>;

// An item of this machine's menu bar. The title shows until there is a picture. The system keeps
// the place that the user gave to an item of this id.
std::unique_ptr<MacStatusItem> hostStatusItem(const std::string& id, const std::string& title,
                                              MacStatusEvents events);

} // namespace tavero

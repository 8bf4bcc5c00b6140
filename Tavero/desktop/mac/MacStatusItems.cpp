#include "desktop/mac/MacStatusItems.h"

#include <utility>

namespace tavero {

namespace {

class Item final : public StatusItem {
  public:
    explicit Item(std::unique_ptr<MacStatusItem> item) : item_(std::move(item)) {}

    void setPicture(const StatusPicture& picture) override {
        if (picture_ == picture) return;
        picture_ = picture;
        if (!picture.wide.isNull()) item_->show(macPicture(picture));
    }

  private:
    std::unique_ptr<MacStatusItem> item_;
    StatusPicture picture_;
};

} // namespace

MacStatusPicture macPicture(const StatusPicture& picture) {
    const QImage image = picture.wide.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    MacStatusPicture result{.width = image.width(),
                            .height = image.height(),
                            .scale = image.devicePixelRatio(),
                            .isTemplate = picture.isTemplate,
                            .text = picture.text};
    result.rgba.reserve(std::size_t{4} * static_cast<std::size_t>(image.width()) *
                        static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        const uchar* line = image.constScanLine(y);
        result.rgba.insert(result.rgba.end(), line, line + std::ptrdiff_t{4} * image.width());
    }
    return result;
}

MacStatusItems::MacStatusItems(MakeMacStatusItem makeItem) : makeItem_(std::move(makeItem)) {}

std::unique_ptr<StatusItem> MacStatusItems::add(std::string id, std::string title,
                                                StatusItemEvents events) {
    MacStatusEvents macEvents{.removed = std::move(events.removed)};
    if (events.open)
        macEvents.clicked = [open = std::move(events.open)](int x, int y) { open({x, y}); };
    return std::make_unique<Item>(makeItem_(id, title, std::move(macEvents)));
}

} // namespace tavero

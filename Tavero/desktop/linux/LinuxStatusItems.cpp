#include "desktop/linux/LinuxStatusItems.h"

#include "desktop/linux/StatusInk.h"
#include "desktop/linux/StatusNotifierItem.h"

#include <algorithm>
#include <utility>

namespace tavero {

class LinuxStatusItems::Item final : public StatusItem {
  public:
    Item(LinuxStatusItems& bar, const std::string& id, const std::string& title,
         const StatusItemEvents& events)
        : bar_(bar), title_(QString::fromStdString(title)), open_(events.open),
          notifier_(QString::fromStdString(id), title_, events) {
        bar_.items_.push_back(this);
        bar_.followHosts();
    }

    ~Item() override {
        std::erase(bar_.items_, this);
        bar_.followHosts();
    }

    void setPicture(const StatusPicture& picture) override {
        if (picture_ == picture) return;
        picture_ = picture;
        draw();
        bar_.fillStrip();
    }

    void draw() {
        const QColor ink = statusInk(hasDarkBar(bar_.desktops_, bar_.appearance_.look()));
        notifier_.show(offeredPictures(picture_, bar_.desktops_, ink),
                       QString::fromStdString(picture_.text));
    }

    void announce() { notifier_.announce(); }
    StatusStrip::Cell cell() const { return {picture_, title_, open_}; }

  private:
    LinuxStatusItems& bar_;
    QString title_;
    std::function<void(QPoint)> open_;
    StatusNotifierItem notifier_;
    StatusPicture picture_;
};

LinuxStatusItems::LinuxStatusItems(QDBusConnection bus, const Appearance& appearance, Clock& clock,
                                   QString desktops)
    : appearance_(appearance), clock_(clock), desktops_(std::move(desktops)),
      hosts_(std::move(bus)) {
    QObject::connect(&hosts_, &StatusNotifierHosts::changed, &connections_,
                     [this] { followHosts(); });
    QObject::connect(&hosts_, &StatusNotifierHosts::watcherAppeared, &connections_, [this] {
        for (Item* item : items_) item->announce();
    });
    QObject::connect(&appearance, &Appearance::changed, &connections_,
                     [this] { followAppearance(); });
}

LinuxStatusItems::~LinuxStatusItems() = default;

std::unique_ptr<StatusItem> LinuxStatusItems::add(std::string id, std::string title,
                                                  StatusItemEvents events) {
    return std::make_unique<Item>(*this, id, title, events);
}

void LinuxStatusItems::followHosts() {
    // Not known is not absent.
    if (hosts_.present() != false || items_.empty()) {
        stripTimer_.reset();
        strip_.reset();
    } else if (strip_) {
        fillStrip();
    } else if (!stripTimer_) {
        stripTimer_ = clock_.after(patience, [this] { showStrip(); });
    }
}

void LinuxStatusItems::showStrip() {
    stripTimer_.reset();
    strip_ = std::make_unique<StatusStrip>(clock_);
    strip_->setDark(appearance_.look().isDark);
    fillStrip();
    strip_->show();
}

void LinuxStatusItems::fillStrip() {
    if (!strip_) return;
    std::vector<StatusStrip::Cell> cells;
    cells.reserve(items_.size());
    for (const Item* item : items_) cells.push_back(item->cell());
    strip_->setCells(std::move(cells));
}

void LinuxStatusItems::followAppearance() {
    if (strip_) strip_->setDark(appearance_.look().isDark);
    for (Item* item : items_) item->draw();
}

std::unique_ptr<StatusItems> hostStatusItems(const Appearance& appearance, Clock& clock) {
    return std::make_unique<LinuxStatusItems>(QDBusConnection::sessionBus(), appearance, clock,
                                              qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

} // namespace tavero

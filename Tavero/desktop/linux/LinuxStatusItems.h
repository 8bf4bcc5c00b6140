#pragma once

#include "desktop/Appearance.h"
#include "desktop/StatusItems.h"
#include "desktop/linux/StatusNotifierHosts.h"
#include "desktop/linux/StatusStrip.h"
#include "time/Clock.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tavero {

// Status items on the session bus, for the panel of the desktop to show; and, while no panel does,
// in a strip at the top of the screen. Template pictures get the ink that suits the bar.
class LinuxStatusItems final : public StatusItems {
  public:
    // Panels go for a moment when they restart and come late when a session starts; for so long the
    // strip waits.
    static constexpr auto patience = std::chrono::seconds(3);

    // `desktops` as XDG_CURRENT_DESKTOP has them. The appearance and the clock must outlive the
    // bar.
    LinuxStatusItems(QDBusConnection bus, const Appearance& appearance, Clock& clock,
                     QString desktops);
    ~LinuxStatusItems() override;

    std::unique_ptr<StatusItem> add(std::string id, std::string title,
                                    StatusItemEvents events) override;

    // Null while it is not shown.
    StatusStrip* strip() const { return strip_.get(); }

  private:
    class Item;

    void followHosts();
    void showStrip();
    void fillStrip();
    void followAppearance();

    const Appearance& appearance_;
    Clock& clock_;
    QString desktops_;
    StatusNotifierHosts hosts_;
    std::vector<Item*> items_; // in the order in which they were added
    std::unique_ptr<StatusStrip> strip_;
    Timer stripTimer_;
    QObject connections_; // end first
};

} // namespace tavero

#pragma once

#include "desktop/Notifications.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// The notifications of the simulated Mac: they are written down, and a test or the demo is the user
// who answers. It answers at once.
class SimNotifications : public Notifications {
  public:
    std::vector<Notification> delivered;
    NotificationAuthorization authorization = NotificationAuthorization::notDetermined;
    bool userAllows = true; // what the user says when asked
    Error error;            // what comes of the next deliveries

    void requestAuthorization(std::function<void(Error)> done) override {
        if (authorization == NotificationAuthorization::notDetermined)
            authorization = userAllows ? NotificationAuthorization::authorized
                                       : NotificationAuthorization::denied;
        done(error);
    }
    void readAuthorization(std::function<void(NotificationAuthorization)> done) override {
        done(authorization);
    }
    void deliver(const Notification& notification, std::function<void(Error)> done) override {
        delivered.push_back(notification);
        done(error);
    }
    void setHandler(Handler handler) override { handler_ = std::move(handler); }

    // The user clicks.
    void act(NotificationAction action, const Notification& about) { handler_(action, about); }

  private:
    Handler handler_;
};

} // namespace tavero

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// Whether the user lets Tavero send notifications.
enum class NotificationAuthorization { notDetermined, denied, authorized, provisional };

// What the desktop shows of an alert.
struct Notification {
    std::string key; // notifications of one key belong together: a newer one replaces an older one
    std::string title;
    std::string body;
    std::string section;    // the page that a click opens
    std::string bundlePath; // of the app it is about; empty if there is none, and then no "Quit"

    bool operator==(const Notification&) const = default;
};

// What the user did with one.
enum class NotificationAction { open, quit };

// The notifications of the desktop. Main thread only; answers come there, later or never, and none
// after this object has gone.
class Notifications {
  public:
    using Error = std::optional<std::string>; // what went wrong, in the system's words
    using Handler = std::function<void(NotificationAction, const Notification&)>;

    virtual ~Notifications() = default;

    // Asks the user, where the system wants it; where it asks nobody, it only finds out.
    virtual void requestAuthorization(std::function<void(Error)> done) = 0;
    virtual void readAuthorization(std::function<void(NotificationAuthorization)> done) = 0;

    // Shows it with the desktop's default sound, also while the application is in front.
    virtual void deliver(const Notification& notification, std::function<void(Error)> done) = 0;

    // Who is told of clicks.
    virtual void setHandler(Handler handler) = 0;
};

// Those of this machine's desktop. Defined by the one platform that is linked in.
std::unique_ptr<Notifications> hostNotifications();

} // namespace tavero

#include "desktop/Notifications.h"

#import <Foundation/Foundation.h>
#import <Foundation/NSError.h>
#import <Foundation/NSSet.h>
#import <Foundation/NSUUID.h>
#import <UserNotifications/UserNotifications.h>

#include <dispatch/dispatch.h>

#include <utility>

static NSString* const appCategory = @"app"; // those that can quit an app
static NSString* const quitAction = @"quit";
static NSString* const sectionKey = @"section";
static NSString* const bundlePathKey = @"bundlePath";

// Hears of what the user did with a notification, on any thread.
@interface TaveroNotificationListener : NSObject <UNUserNotificationCenterDelegate>
@property(nonatomic, copy) void (^answered)(NSString* action, UNNotificationContent* content);
@end

@implementation TaveroNotificationListener
// Shown also while the application is in front.
- (void)userNotificationCenter:(UNUserNotificationCenter*)__unused center
       willPresentNotification:(UNNotification*)__unused notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
    completionHandler(UNNotificationPresentationOptionBanner |
                      UNNotificationPresentationOptionSound);
}
- (void)userNotificationCenter:(UNUserNotificationCenter*)__unused center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
    self.answered(response.actionIdentifier, response.notification.request.content);
    completionHandler();
}
@end

namespace tavero {

namespace {

using Done = std::function<void(Notifications::Error)>;

NSString* text(const std::string& utf8) {
    NSString* string = [NSString stringWithUTF8String:utf8.c_str()];
    return string ? string : @"";
}

// Empty unless it is text.
std::string utf8(id value) {
    if (![value isKindOfClass:[NSString class]]) return {};
    const char* bytes = static_cast<NSString*>(value).UTF8String;
    return bytes ? bytes : "";
}

Notifications::Error errorOf(NSError* error) {
    if (error == nil) return std::nullopt;
    return utf8(error.localizedDescription);
}

NotificationAuthorization authorizationOf(UNAuthorizationStatus status) {
    switch (status) {
    case UNAuthorizationStatusNotDetermined:
        return NotificationAuthorization::notDetermined;
    case UNAuthorizationStatusDenied:
        return NotificationAuthorization::denied;
    case UNAuthorizationStatusAuthorized:
        return NotificationAuthorization::authorized;
    case UNAuthorizationStatusProvisional:
        return NotificationAuthorization::provisional;
    }
    return NotificationAuthorization::notDetermined;
}

UNNotificationContent* contentOf(const Notification& notification) {
    UNMutableNotificationContent* content = [UNMutableNotificationContent new];
    content.title = text(notification.title);
    content.body = text(notification.body);
    content.sound = UNNotificationSound.defaultSound;
    content.userInfo =
        @{sectionKey : text(notification.section), bundlePathKey : text(notification.bundlePath)};
    if (!notification.bundlePath.empty()) content.categoryIdentifier = appCategory;
    content.threadIdentifier = text(notification.key); // the system puts those of one key together
    return content;
}

// What is left of a notification that may be from before this start of the program.
Notification notificationOf(UNNotificationContent* content) {
    return {.key = utf8(content.threadIdentifier),
            .title = utf8(content.title),
            .body = utf8(content.body),
            .section = utf8(content.userInfo[sectionKey]),
            .bundlePath = utf8(content.userInfo[bundlePathKey])};
}

class MacNotifications final : public Notifications {
  public:
    MacNotifications()
        : center_(UNUserNotificationCenter.currentNotificationCenter),
          listener_([TaveroNotificationListener new]) {
        const std::weak_ptr<Handler> weak = handler_;
        listener_.answered = ^(NSString* action, UNNotificationContent* content) {
          const Notification about = notificationOf(content);
          dispatch_async(dispatch_get_main_queue(), ^{
            tell(weak.lock().get(), action, about);
          });
        };
        center_.delegate = listener_;
        UNNotificationAction* quit =
            [UNNotificationAction actionWithIdentifier:quitAction
                                                 title:@"Quit"
                                               options:UNNotificationActionOptionNone];
        UNNotificationCategory* app =
            [UNNotificationCategory categoryWithIdentifier:appCategory
                                                   actions:@[ quit ]
                                         intentIdentifiers:@[]
                                                   options:UNNotificationCategoryOptionNone];
        [center_ setNotificationCategories:[NSSet setWithObject:app]];
    }

    void requestAuthorization(Done done) override {
        const std::weak_ptr<Handler> weak = handler_;
        [center_
            requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                          completionHandler:^(BOOL, NSError* error) {
                            finish(weak, done, errorOf(error));
                          }];
    }

    void readAuthorization(std::function<void(NotificationAuthorization)> done) override {
        const std::weak_ptr<Handler> weak = handler_;
        [center_ getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
          finish(weak, done, authorizationOf(settings.authorizationStatus));
        }];
    }

    void deliver(const Notification& notification, Done done) override {
        @autoreleasepool {
            UNNotificationRequest* request =
                [UNNotificationRequest requestWithIdentifier:NSUUID.UUID.UUIDString
                                                     content:contentOf(notification)
                                                     trigger:nil];
            const std::weak_ptr<Handler> weak = handler_;
            [center_ addNotificationRequest:request
                      withCompletionHandler:^(NSError* error) {
                        finish(weak, done, errorOf(error));
                      }];
        }
    }

    void setHandler(Handler handler) override { *handler_ = std::move(handler); }

  private:
    // The system answers on a thread of its own, and may do so after this object has gone.
    template <typename Call, typename Result>
    static void finish(const std::weak_ptr<Handler>& weak, const Call& done, const Result& result) {
        const std::weak_ptr<Handler> alive = weak;
        const Call call = done;
        const Result copy = result;
        dispatch_async(dispatch_get_main_queue(), ^{
          if (!alive.expired()) call(copy);
        });
    }

    static void tell(const Handler* handler, NSString* action, const Notification& about) {
        if (handler == nullptr || !*handler) return;
        if ([action isEqual:quitAction]) (*handler)(NotificationAction::quit, about);
        if ([action isEqual:UNNotificationDefaultActionIdentifier])
            (*handler)(NotificationAction::open, about);
    }

    UNUserNotificationCenter* center_;
    TaveroNotificationListener* listener_; // the center holds it weakly
    std::shared_ptr<Handler> handler_ = std::make_shared<Handler>();
};

// A program outside an app bundle: the system ends it if it asks for its notifications.
class NoNotifications final : public Notifications {
  public:
    void requestAuthorization(Done done) override { done(std::nullopt); }
    void readAuthorization(std::function<void(NotificationAuthorization)> done) override {
        done(NotificationAuthorization::denied);
    }
    void deliver(const Notification&, Done done) override {
        done("Tavero can notify only as an app in a bundle.");
    }
    void setHandler(Handler) override {}
};

} // namespace

std::unique_ptr<Notifications> hostNotifications() {
    if (NSBundle.mainBundle.bundleIdentifier == nil) return std::make_unique<NoNotifications>();
    return std::make_unique<MacNotifications>();
}

} // namespace tavero

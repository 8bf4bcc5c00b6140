#include "desktop/RunningApps.h"

#import <AppKit/AppKit.h>

namespace tavero {

namespace {

class MacRunningApps final : public RunningApps {
  public:
    std::optional<HaveEnded> askToQuit(const std::string& bundlePath) override {
        @autoreleasepool {
            NSString* path = [NSString stringWithUTF8String:bundlePath.c_str()];
            if (path == nil) return std::nullopt;
            NSString* identifier = [NSBundle bundleWithPath:path].bundleIdentifier;
            if (identifier == nil) return std::nullopt;
            if ([identifier isEqual:NSBundle.mainBundle.bundleIdentifier]) return std::nullopt;

            NSArray<NSRunningApplication*>* apps =
                [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier];
            if (apps.count == 0) return std::nullopt;
            for (NSRunningApplication* app in apps) [app terminate];
            return [apps] {
                for (NSRunningApplication* app in apps)
                    if (!app.terminated) return false;
                return true;
            };
        }
    }
};

} // namespace

std::unique_ptr<RunningApps> hostRunningApps(AppProcesses) {
    return std::make_unique<MacRunningApps>();
}

} // namespace tavero

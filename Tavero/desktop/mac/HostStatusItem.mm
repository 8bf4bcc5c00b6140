#include "desktop/mac/MacStatusBar.h"

#import <AppKit/NSBitmapImageRep.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSScreen.h>
#import <AppKit/NSStatusBar.h>
#import <AppKit/NSStatusBarButton.h>
#import <AppKit/NSStatusItem.h>
#import <AppKit/NSWindow.h>
#import <Foundation/Foundation.h>
#import <Foundation/NSKeyValueObserving.h>

#include <dispatch/dispatch.h>

#include <algorithm>
#include <cmath>
#include <utility>

static NSString* const visibleKey = @"visible"; // NO once the user has taken the item away

// Hears of the clicks on an item and of its removal.
@interface TaveroStatusListener : NSObject
@property(nonatomic, copy) void (^clicked)(void);
@property(nonatomic, copy) void (^removed)(void);
- (void)click:(id)sender;
@end

@implementation TaveroStatusListener
- (void)click:(id)__unused sender {
    dispatch_async(dispatch_get_main_queue(), self.clicked);
}
- (void)observeValueForKeyPath:(NSString*)__unused path
                      ofObject:(id)object
                        change:(NSDictionary<NSString*, id>*)__unused change
                       context:(void*)__unused context {
    if (!static_cast<NSStatusItem*>(object).visible)
        dispatch_async(dispatch_get_main_queue(), self.removed);
}
@end

namespace tavero {

namespace {

NSString* text(const std::string& utf8) {
    NSString* string = [NSString stringWithUTF8String:utf8.c_str()];
    return string ? string : @"";
}

NSImage* image(const MacStatusPicture& picture) {
    NSBitmapImageRep* pixels =
        [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                pixelsWide:picture.width
                                                pixelsHigh:picture.height
                                             bitsPerSample:8
                                           samplesPerPixel:4
                                                  hasAlpha:YES
                                                  isPlanar:NO
                                            colorSpaceName:NSDeviceRGBColorSpace
                                               bytesPerRow:NSInteger{4} * picture.width
                                              bitsPerPixel:32];
    if (pixels == nil || pixels.bitmapData == nullptr) return nil;
    std::copy(picture.rgba.begin(), picture.rgba.end(), pixels.bitmapData);
    const NSSize size = {picture.width / picture.scale, picture.height / picture.scale};
    pixels.size = size;
    NSImage* image = [[NSImage alloc] initWithSize:size];
    [image addRepresentation:pixels];
    [image setTemplate:picture.isTemplate];
    return image;
}

class HostStatusItem final : public MacStatusItem {
  public:
    HostStatusItem(const std::string& id, const std::string& title, MacStatusEvents events)
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]),
          listener_([TaveroStatusListener new]) {
        listen(std::move(events));
        item_.autosaveName = text("tavero-" + id);
        item_.behavior = NSStatusItemBehaviorRemovalAllowed;
        item_.visible = YES; // it may have been removed once, and is wanted again
        item_.button.title = text(title);
        item_.button.target = listener_;
        item_.button.action = @selector(click:);
        [item_ addObserver:listener_ forKeyPath:visibleKey options:0 context:nullptr];
    }

    ~HostStatusItem() override {
        [item_ removeObserver:listener_ forKeyPath:visibleKey];
        item_.button.target = nil;
        [NSStatusBar.systemStatusBar removeStatusItem:item_];
    }

    void show(const MacStatusPicture& picture) override {
        @autoreleasepool {
            item_.button.image = image(picture);
            item_.button.title = @"";
            item_.button.toolTip = text(picture.text);
            [item_.button setAccessibilityLabel:text(picture.text)];
        }
    }

  private:
    // What arrives after the item has gone reaches nobody.
    void listen(MacStatusEvents events) {
        const auto shared = std::make_shared<MacStatusEvents>(std::move(events));
        events_ = shared;
        const std::weak_ptr<MacStatusEvents> weak = shared;
        NSStatusItem* __weak item = item_;
        listener_.clicked = ^{
          const auto alive = weak.lock();
          NSStatusItem* strong = item;
          if (!alive || !alive->clicked || strong == nil) return;
          const NSRect frame = strong.button.window.frame;
          // AppKit counts upwards from the bottom of the first screen.
          NSArray<NSScreen*>* screens = NSScreen.screens;
          const CGFloat top = screens.count > 0 ? screens[0].frame.size.height : 0;
          alive->clicked(
              static_cast<int>(std::lround(frame.origin.x + frame.size.width / 2)),
              static_cast<int>(std::lround(top - frame.origin.y - frame.size.height / 2)));
        };
        listener_.removed = ^{
          const auto alive = weak.lock();
          if (alive && alive->removed) alive->removed();
        };
    }

    NSStatusItem* item_;
    TaveroStatusListener* listener_;
    std::shared_ptr<MacStatusEvents> events_;
};

} // namespace

std::unique_ptr<MacStatusItem> hostStatusItem(const std::string& id, const std::string& title,
                                              MacStatusEvents events) {
    return std::make_unique<HostStatusItem>(id, title, std::move(events));
}

} // namespace tavero

// The part of AppKit's status items that Tavero uses, declared for the check.
#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSStatusBarButton;

typedef NS_OPTIONS(NSUInteger, NSStatusItemBehavior) {
    NSStatusItemBehaviorRemovalAllowed = (1 << 1),
};
typedef NSString* NSStatusItemAutosaveName;

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property NSStatusItemBehavior behavior;
@property(getter=isVisible) BOOL visible;
@property(null_resettable, copy) NSStatusItemAutosaveName autosaveName;
@end

#pragma clang assume_nonnull end

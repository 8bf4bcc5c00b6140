// The button of a status item with what Tavero uses of the classes above it, declared for the
// check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSImage, NSWindow;

@interface NSResponder : NSObject
- (void)setAccessibilityLabel:(nullable NSString*)label;
@end

@interface NSView : NSResponder
@property(nullable, readonly, assign) NSWindow* window;
@property(nullable, copy) NSString* toolTip;
@end

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
@end

@interface NSButton : NSControl
@property(copy) NSString* title;
@property(nullable, strong) NSImage* image;
@end

@interface NSStatusBarButton : NSButton
@end

#pragma clang assume_nonnull end

// The part of AppKit's windows that Tavero uses, declared for the check.
#pragma once

#import <AppKit/NSStatusBarButton.h>
#import <CoreGraphics/CoreGraphics.h>

#pragma clang assume_nonnull begin

@interface NSWindow : NSResponder
@property(readonly) CGRect frame;
@end

#pragma clang assume_nonnull end

// The part of AppKit's screens that Tavero uses, declared for the check.
#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) CGRect frame;
@end

#pragma clang assume_nonnull end

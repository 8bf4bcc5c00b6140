// The part of AppKit's drawing contexts that Tavero uses, declared for the check.
#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSGraphicsContext : NSObject
@property(class, strong, nullable) NSGraphicsContext* currentContext;
+ (nullable instancetype)graphicsContextWithCGContext:(CGContextRef)context flipped:(BOOL)flipped;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

#pragma clang assume_nonnull end

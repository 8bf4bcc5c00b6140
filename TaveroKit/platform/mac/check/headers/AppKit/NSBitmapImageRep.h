// The part of AppKit's bitmaps that Tavero uses, declared for the check.
#pragma once

#import <AppKit/NSImage.h>

#pragma clang assume_nonnull begin

typedef NSString* NSColorSpaceName;
extern NSColorSpaceName const NSDeviceRGBColorSpace;

@interface NSImageRep : NSObject
@property NSSize size;
@end

@interface NSBitmapImageRep : NSImageRep
@property(nullable, readonly) unsigned char* bitmapData __attribute__((objc_returns_inner_pointer));
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bps
                                  samplesPerPixel:(NSInteger)spp
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)rBytes
                                     bitsPerPixel:(NSInteger)pBits;
@end

#pragma clang assume_nonnull end

// The part of AppKit's images that Tavero uses, declared for the check.
#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef CGSize NSSize;
typedef CGRect NSRect;
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    NSRect rect = {{x, y}, {width, height}};
    return rect;
}

typedef CGFloat NSFontWeight;
extern const NSFontWeight NSFontWeightRegular;

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@class NSImageRep;

@interface NSImage : NSObject
@property NSSize size;
- (void)setTemplate:(BOOL)isTemplate; // a property, whose name is a keyword of C++
- (instancetype)initWithSize:(NSSize)size;
- (void)addRepresentation:(NSImageRep*)imageRep;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (void)drawInRect:(NSRect)rect;
@end

#pragma clang assume_nonnull end

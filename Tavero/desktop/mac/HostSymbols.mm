#include "desktop/mac/HostSymbols.h"

#include <algorithm>
#include <cstddef>

#import <AppKit/NSGraphicsContext.h>
#import <AppKit/NSImage.h>

namespace tavero {

namespace {

constexpr std::size_t bytesPerPixel = 4; // the last of them the coverage

NSImage* symbolNamed(std::string_view name, double pointSize) {
    NSString* text = [[NSString alloc] initWithBytes:name.data()
                                              length:name.size()
                                            encoding:NSUTF8StringEncoding];
    if (text == nil) return nil;
    NSImage* image = [NSImage imageWithSystemSymbolName:text accessibilityDescription:nil];
    NSImageSymbolConfiguration* size =
        [NSImageSymbolConfiguration configurationWithPointSize:pointSize
                                                        weight:NSFontWeightRegular];
    return [image imageWithSymbolConfiguration:size];
}

bool isEmpty(NSSize size) { return !(size.width > 0 && size.height > 0); }

NSRect fitted(NSSize size, double width, double height) {
    const double scale = std::min(width / size.width, height / size.height);
    const double fittedWidth = size.width * scale;
    const double fittedHeight = size.height * scale;
    return NSMakeRect((width - fittedWidth) / 2, (height - fittedHeight) / 2, fittedWidth,
                      fittedHeight);
}

// Draws into pixels of red, green, blue and coverage. False if the system refuses.
bool draw(NSImage* image, int width, int height, std::vector<std::uint8_t>& pixels) {
    const CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
    const CGContextRef bitmap = CGBitmapContextCreate(
        pixels.data(), static_cast<std::size_t>(width), static_cast<std::size_t>(height), 8,
        static_cast<std::size_t>(width) * bytesPerPixel, space, kCGImageAlphaPremultipliedLast);
    CGColorSpaceRelease(space);
    if (bitmap == nullptr) return false;
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:bitmap
                                                                               flipped:NO];
    [image drawInRect:fitted(image.size, width, height)];
    [NSGraphicsContext restoreGraphicsState];
    CGContextRelease(bitmap);
    return true;
}

} // namespace

std::optional<SymbolExtent> hostSymbolExtent(std::string_view name, double pointSize) {
    @autoreleasepool {
        NSImage* image = symbolNamed(name, pointSize);
        if (image == nil || isEmpty(image.size)) return std::nullopt;
        return SymbolExtent{image.size.width, image.size.height};
    }
}

std::optional<SymbolMask> hostSymbolMask(std::string_view name, int width, int height) {
    if (width < 1 || height < 1) return std::nullopt;
    @autoreleasepool {
        NSImage* image = symbolNamed(name, std::min(width, height));
        if (image == nil || isEmpty(image.size)) return std::nullopt;
        const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        std::vector<std::uint8_t> pixels(count * bytesPerPixel);
        if (!draw(image, width, height, pixels)) return std::nullopt;
        SymbolMask mask{width, height, std::vector<std::uint8_t>(count)};
        for (std::size_t at = 0; at < count; ++at)
            mask.coverage[at] = pixels[at * bytesPerPixel + bytesPerPixel - 1];
        return mask;
    }
}

} // namespace tavero

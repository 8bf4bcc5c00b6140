// The part of CoreGraphics that Tavero uses, declared for the check.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef double CGFloat;
typedef struct {
    CGFloat x, y;
} CGPoint;
typedef struct {
    CGFloat width, height;
} CGSize;
typedef struct {
    CGPoint origin;
    CGSize size;
} CGRect;

typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct CGContext* CGContextRef;
enum { kCGImageAlphaPremultipliedLast = 1 };

CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
void CGColorSpaceRelease(CGColorSpaceRef space);
CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space, uint32_t bitmapInfo);
void CGContextRelease(CGContextRef context);

#ifdef __cplusplus
}
#endif

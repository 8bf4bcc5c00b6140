// The part of CoreFoundation that Tavero uses, declared for the check.
#pragma once

#include <TargetConditionals.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef double CFTimeInterval;
typedef unsigned long CFTypeID;
typedef unsigned char Boolean;

typedef const void* CFTypeRef;
typedef const struct __attribute__((objc_bridge(id))) __CFAllocator* CFAllocatorRef;
typedef const struct __attribute__((objc_bridge(NSArray))) __CFArray* CFArrayRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFNumber* CFNumberRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFBoolean* CFBooleanRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef struct __attribute__((objc_bridge_mutable(NSMutableDictionary)))
__CFDictionary* CFMutableDictionaryRef;

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeID CFGetTypeID(CFTypeRef cf);
CFTypeID CFBooleanGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);

#ifdef __cplusplus
}
#endif

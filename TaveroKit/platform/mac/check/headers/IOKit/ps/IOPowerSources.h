// The part of the power source calls that Tavero uses, declared for the check.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

#define kIOPSTimeRemainingUnlimited ((CFTimeInterval)-2.0)

CFTimeInterval IOPSGetTimeRemainingEstimate(void);
CFTypeRef IOPSCopyPowerSourcesInfo(void) __attribute__((cf_returns_retained));
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef info) __attribute__((cf_returns_retained));
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef info, CFTypeRef source);

#ifdef __cplusplus
}
#endif

// The part of the power source calls that Tavero uses, declared for the check.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

#define kIOPSTimeRemainingUnlimited ((CFTimeInterval)-2.0)

CFTimeInterval IOPSGetTimeRemainingEstimate(void);

#ifdef __cplusplus
}
#endif

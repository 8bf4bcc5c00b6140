// The part of CoreAudio's taps that Tavero uses, declared for the check.
#pragma once

#ifdef __OBJC__

#import <CoreAudio/CATapDescription.h>

#ifdef __cplusplus
extern "C" {
#endif

OSStatus AudioHardwareCreateProcessTap(CATapDescription* _Nullable inDescription,
                                       AudioObjectID* _Nullable outTapID);
OSStatus AudioHardwareDestroyProcessTap(AudioObjectID inTapID);

#ifdef __cplusplus
}
#endif

#endif

// The part of CoreAudio's tap descriptions that Tavero uses, declared for the check.
#pragma once

#ifdef __OBJC__

#import <CoreAudio/CoreAudio.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSUUID;

typedef NS_ENUM(NSInteger, CATapMuteBehavior) {
    CATapUnmuted = 0,
    CATapMuted = 1,
    CATapMutedWhenTapped = 2,
};

@interface CATapDescription : NSObject
- (instancetype)initStereoMixdownOfProcesses:(NSArray<NSNumber*>*)processes;
- (instancetype)initWithProcesses:(NSArray<NSNumber*>*)processes
                     andDeviceUID:(NSString*)deviceUID
                       withStream:(NSInteger)stream;
- (void)setUUID:(NSUUID*)uuid;
- (void)setName:(NSString*)name;
- (void)setPrivate:(BOOL)isPrivate;
- (void)setMuteBehavior:(CATapMuteBehavior)muteBehavior;
@end

#pragma clang assume_nonnull end

#endif

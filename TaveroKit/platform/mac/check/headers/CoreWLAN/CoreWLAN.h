// The part of CoreWLAN that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSInteger, CWPHYMode) {
    kCWPHYModeNone = 0,
};

typedef NS_ENUM(NSInteger, CWChannelBand) {
    kCWChannelBandUnknown = 0,
};

@interface CWChannel : NSObject
@property(readonly) CWChannelBand channelBand;
@end

@interface CWInterface : NSObject
- (BOOL)powerOn;
- (NSInteger)rssiValue;
- (double)transmitRate;
- (CWPHYMode)activePHYMode;
- (nullable CWChannel*)wlanChannel;
@end

@interface CWWiFiClient : NSObject
+ (instancetype)sharedWiFiClient;
- (nullable CWInterface*)interface;
@end

#pragma clang assume_nonnull end

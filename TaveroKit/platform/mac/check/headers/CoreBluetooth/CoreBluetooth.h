// The part of CoreBluetooth that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

#pragma clang assume_nonnull begin

@class CBCentralManager;

typedef NS_ENUM(NSInteger, CBManagerAuthorization) {
    CBManagerAuthorizationNotDetermined = 0,
    CBManagerAuthorizationRestricted,
    CBManagerAuthorizationDenied,
    CBManagerAuthorizationAllowedAlways,
};

@interface CBManager : NSObject
@property(class, readonly) CBManagerAuthorization authorization;
@end

@protocol CBCentralManagerDelegate <NSObject>
- (void)centralManagerDidUpdateState:(CBCentralManager*)central;
@end

@interface CBCentralManager : CBManager
- (instancetype)initWithDelegate:(nullable id<CBCentralManagerDelegate>)delegate
                           queue:(nullable dispatch_queue_t)queue;
@end

#pragma clang assume_nonnull end

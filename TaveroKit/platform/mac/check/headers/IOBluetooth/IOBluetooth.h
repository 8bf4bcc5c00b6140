// The part of IOBluetooth that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>
#import <IOKit/IOReturn.h>

#pragma clang assume_nonnull begin

typedef signed char BluetoothHCIRSSIValue;

@interface IOBluetoothDevice : NSObject
+ (nullable instancetype)deviceWithAddressString:(nullable NSString*)address;
- (BOOL)isConnected;
- (BluetoothHCIRSSIValue)rawRSSI;
- (IOReturn)openConnection:(nullable id)target;
- (IOReturn)closeConnection;
@end

@interface IOBluetoothHostController : NSObject
+ (nullable instancetype)defaultController;
- (nullable NSString*)nameAsString;
@end

#pragma clang assume_nonnull end

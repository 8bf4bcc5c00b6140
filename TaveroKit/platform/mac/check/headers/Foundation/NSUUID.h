// The part of Foundation's UUIDs that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSUUID : NSObject
@property(readonly, copy) NSString* UUIDString;
+ (instancetype)UUID;
- (nullable instancetype)initWithUUIDString:(NSString*)string;
@end

#pragma clang assume_nonnull end

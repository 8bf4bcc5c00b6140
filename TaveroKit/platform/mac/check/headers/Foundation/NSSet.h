// The part of Foundation's sets that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSSet<__covariant ObjectType> : NSObject
+ (instancetype)setWithObject:(ObjectType)object;
@end

#pragma clang assume_nonnull end

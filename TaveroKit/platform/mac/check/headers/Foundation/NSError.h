// The part of Foundation's errors that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

#pragma clang assume_nonnull end

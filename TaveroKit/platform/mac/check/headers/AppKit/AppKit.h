// The part of AppKit that Tavero uses, declared for the check.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSRunningApplication : NSObject
@property(readonly, getter=isTerminated) BOOL terminated;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:
    (NSString*)bundleIdentifier;
- (BOOL)terminate;
@end

#pragma clang assume_nonnull end

// The part of Foundation that Tavero uses, declared for the check.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <objc/NSObject.h>

// As the SDK has them for C++: a set of options is a plain number there.
#define NS_ENUM(type, name)                                                                        \
    enum name : type name;                                                                         \
    enum name : type
#define NS_OPTIONS(type, name)                                                                     \
    type name;                                                                                     \
    enum : type

#pragma clang assume_nonnull begin

@class NSError, NSString, NSURL;

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@protocol NSCopying
@end

typedef NS_ENUM(NSInteger, NSComparisonResult) {
    NSOrderedAscending = -1,
    NSOrderedSame = 0,
    NSOrderedDescending = 1,
};

typedef NSUInteger NSStringEncoding;
enum { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
@property(readonly, copy) NSString* lowercaseString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)string;
@end

@interface NSNumber : NSObject
@property(readonly) BOOL boolValue;
@property(readonly) long long longLongValue;
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
@end

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes __attribute__((objc_returns_inner_pointer));
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                           count:(NSUInteger)count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSFastEnumeration>
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
- (void)setObject:(nullable ObjectType)object forKeyedSubscript:(KeyType<NSCopying>)key;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
+ (nullable instancetype)bundleWithPath:(NSString*)path;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

typedef NSString* NSURLResourceKey;
extern NSURLResourceKey const NSURLVolumeTotalCapacityKey;
extern NSURLResourceKey const NSURLVolumeAvailableCapacityForImportantUsageKey;
extern NSURLResourceKey const NSURLVolumeAvailableCapacityKey;
extern NSURLResourceKey const NSURLVolumeLocalizedNameKey;
extern NSURLResourceKey const NSURLVolumeIsInternalKey;
extern NSURLResourceKey const NSURLVolumeIsBrowsableKey;

@interface NSURL : NSObject
@property(nullable, readonly, copy) NSString* path;
+ (NSURL*)fileURLWithPath:(NSString*)path;
- (nullable NSDictionary<NSURLResourceKey, id>*)
    resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                    error:(NSError* _Nullable* _Nullable)error;
@end

typedef NS_OPTIONS(NSUInteger, NSVolumeEnumerationOptions) {
    NSVolumeEnumerationSkipHiddenVolumes = 1UL << 1,
};

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
    NSApplicationSupportDirectory = 14,
};

typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
    NSUserDomainMask = 1,
};

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
- (nullable NSArray<NSURL*>*)
    mountedVolumeURLsIncludingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                                            options:(NSVolumeEnumerationOptions)options;
@end

typedef NS_ENUM(NSInteger, NSProcessInfoThermalState) {
    NSProcessInfoThermalStateNominal,
    NSProcessInfoThermalStateFair,
    NSProcessInfoThermalStateSerious,
    NSProcessInfoThermalStateCritical,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, getter=isLowPowerModeEnabled) BOOL lowPowerModeEnabled;
@property(readonly) NSProcessInfoThermalState thermalState;
@end

#pragma clang assume_nonnull end

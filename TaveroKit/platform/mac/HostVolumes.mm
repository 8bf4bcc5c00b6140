#include "platform/mac/Host.h"

#import <Foundation/Foundation.h>

#include <utility>

namespace tavero {

namespace {

std::optional<std::int64_t> number(NSDictionary* values, NSURLResourceKey key) {
    const id value = values[key];
    if (![value isKindOfClass:NSNumber.class]) return std::nullopt;
    return static_cast<NSNumber*>(value).longLongValue;
}

std::optional<bool> boolean(NSDictionary* values, NSURLResourceKey key) {
    const id value = values[key];
    if (![value isKindOfClass:NSNumber.class]) return std::nullopt;
    return static_cast<bool>(static_cast<NSNumber*>(value).boolValue);
}

std::optional<std::string> text(NSString* value) {
    const char* text = value.UTF8String; // null for null
    return text ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> text(NSDictionary* values, NSURLResourceKey key) {
    const id value = values[key];
    return [value isKindOfClass:NSString.class] ? text(static_cast<NSString*>(value))
                                                : std::nullopt;
}

class HostVolumes : public MacVolumes {
  public:
    std::optional<VolumeSpace> space(const std::string& path) override {
        @autoreleasepool {
            NSString* name = [NSString stringWithUTF8String:path.c_str()];
            if (name == nil) return std::nullopt;
            NSArray* keys = @[
                NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityForImportantUsageKey,
                NSURLVolumeAvailableCapacityKey, NSURLVolumeLocalizedNameKey
            ];
            NSURL* url = [NSURL fileURLWithPath:name];
            NSDictionary* values = [url resourceValuesForKeys:keys error:nil];
            if (values == nil) return std::nullopt;
            return VolumeSpace{
                .capacity = number(values, NSURLVolumeTotalCapacityKey),
                .availableForImportantUsage =
                    number(values, NSURLVolumeAvailableCapacityForImportantUsageKey),
                .available = number(values, NSURLVolumeAvailableCapacityKey),
                .name = text(values, NSURLVolumeLocalizedNameKey),
            };
        }
    }

    std::vector<MountedVolume> volumes() override {
        @autoreleasepool {
            NSArray* keys = @[
                NSURLVolumeLocalizedNameKey, NSURLVolumeTotalCapacityKey,
                NSURLVolumeAvailableCapacityKey, NSURLVolumeIsInternalKey, NSURLVolumeIsBrowsableKey
            ];
            const NSVolumeEnumerationOptions options = NSVolumeEnumerationSkipHiddenVolumes;
            NSArray<NSURL*>* urls = [NSFileManager.defaultManager
                mountedVolumeURLsIncludingResourceValuesForKeys:keys
                                                        options:options];
            std::vector<MountedVolume> volumes;
            for (NSURL* url in urls) {
                NSDictionary* values = [url resourceValuesForKeys:keys error:nil];
                std::optional<std::string> path = text(url.path);
                if (values == nil || !path) continue;
                volumes.push_back({
                    .path = std::move(*path),
                    .name = text(values, NSURLVolumeLocalizedNameKey),
                    .capacity = number(values, NSURLVolumeTotalCapacityKey),
                    .available = number(values, NSURLVolumeAvailableCapacityKey),
                    .isInternal = boolean(values, NSURLVolumeIsInternalKey),
                    .isBrowsable = boolean(values, NSURLVolumeIsBrowsableKey),
                });
            }
            return volumes;
        }
    }
};

} // namespace

std::shared_ptr<MacVolumes> hostVolumes() { return std::make_shared<HostVolumes>(); }

} // namespace tavero

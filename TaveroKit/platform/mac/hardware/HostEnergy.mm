#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"
#include "platform/mac/PrivateSymbols.h"

#import <Foundation/Foundation.h>

namespace tavero {

namespace {

// The calls to the system's reports, as their other users declare them. "Copy" and "create" hand a
// reference over.
struct Reports {
    CFMutableDictionaryRef (*copyChannels)(CFStringRef group, CFStringRef subgroup, std::uint64_t,
                                           std::uint64_t, std::uint64_t);
    CFTypeRef (*createSubscription)(void*, CFMutableDictionaryRef channels,
                                    CFMutableDictionaryRef* subscribed, std::uint64_t, CFTypeRef);
    CFTypeRef (*createSamples)(CFTypeRef subscription, CFDictionaryRef subscribed, CFTypeRef);
    CFStringRef (*channelName)(CFDictionaryRef channel);
    CFStringRef (*unitLabel)(CFDictionaryRef channel);
    std::int64_t (*integerValue)(CFDictionaryRef channel, std::int64_t);

    // False if one is missing.
    bool find() {
        using PrivateSymbols::find;
        void* library = PrivateSymbols::ioReport();
        return find(library, "IOReportCopyChannelsInGroup", copyChannels) &&
               find(library, "IOReportCreateSubscription", createSubscription) &&
               find(library, "IOReportCreateSamples", createSamples) &&
               find(library, "IOReportChannelGetChannelName", channelName) &&
               find(library, "IOReportChannelGetUnitLabel", unitLabel) &&
               find(library, "IOReportSimpleGetIntegerValue", integerValue);
    }
};

class HostEnergy : public EnergySource {
  public:
    HostEnergy(const Reports& reports, id subscription, NSDictionary* subscribed)
        : reports_(reports), subscription_(subscription), subscribed_(subscribed) {}

    std::optional<std::vector<EnergyChannel>> channels() override {
        @autoreleasepool {
            const id sample = (__bridge_transfer id)reports_.createSamples(
                (__bridge CFTypeRef)subscription_, (__bridge CFDictionaryRef)subscribed_, nullptr);
            if (![sample isKindOfClass:NSDictionary.class]) return std::nullopt;
            const id list = static_cast<NSDictionary*>(sample)[@"IOReportChannels"];
            if (![list isKindOfClass:NSArray.class]) return std::nullopt;
            std::vector<EnergyChannel> channels;
            for (id channel in static_cast<NSArray*>(list)) {
                if (![channel isKindOfClass:NSDictionary.class]) return std::nullopt;
                channels.push_back(read((__bridge CFDictionaryRef)channel));
            }
            return channels;
        }
    }

  private:
    EnergyChannel read(CFDictionaryRef channel) const {
        return {
            .name = propertyText((__bridge id)reports_.channelName(channel)),
            .unit = propertyText((__bridge id)reports_.unitLabel(channel)).value_or(""),
            .value = reports_.integerValue(channel, 0),
        };
    }

    Reports reports_;
    id subscription_;
    NSDictionary* subscribed_;
};

} // namespace

std::unique_ptr<EnergySource> hostEnergy() {
    @autoreleasepool {
        Reports reports{};
        if (!reports.find()) return nullptr;
        NSMutableDictionary* channels =
            (__bridge_transfer NSMutableDictionary*)reports.copyChannels(
                (__bridge CFStringRef) @"Energy Model", nullptr, 0, 0, 0);
        if (channels == nil) return nullptr;
        CFMutableDictionaryRef subscribedRef = nullptr;
        const id subscription = (__bridge_transfer id)reports.createSubscription(
            nullptr, (__bridge CFMutableDictionaryRef)channels, &subscribedRef, 0, nullptr);
        NSDictionary* subscribed = (__bridge_transfer NSDictionary*)subscribedRef;
        if (subscription == nil || subscribed == nil) return nullptr;
        return std::make_unique<HostEnergy>(reports, subscription, subscribed);
    }
}

} // namespace tavero

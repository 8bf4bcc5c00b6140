#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"
#include "platform/mac/PrivateSymbols.h"

#import <Foundation/Foundation.h>

namespace tavero {

namespace {

constexpr int vendorPage = 0xff00;
constexpr int temperatureSensor = 5;
constexpr std::int64_t temperatureEvent = 15;
constexpr std::int32_t temperatureField = 15 << 16;

// The calls to the system's sensors, as their other users declare them. "Copy" and "create" hand a
// reference over.
struct EventSystem {
    CFTypeRef (*create)(CFAllocatorRef allocator);
    void (*setMatching)(CFTypeRef client, CFDictionaryRef matching);
    CFTypeRef (*copyServices)(CFTypeRef client);
    CFTypeRef (*copyProperty)(CFTypeRef service, CFStringRef key);
    CFTypeRef (*copyEvent)(CFTypeRef service, std::int64_t type, std::int64_t, std::int64_t);
    double (*getFloat)(CFTypeRef event, std::int32_t field);

    // False if one is missing.
    bool find() {
        using PrivateSymbols::find;
        void* library = PrivateSymbols::ioKit();
        return find(library, "IOHIDEventSystemClientCreate", create) &&
               find(library, "IOHIDEventSystemClientSetMatching", setMatching) &&
               find(library, "IOHIDEventSystemClientCopyServices", copyServices) &&
               find(library, "IOHIDServiceClientCopyProperty", copyProperty) &&
               find(library, "IOHIDServiceClientCopyEvent", copyEvent) &&
               find(library, "IOHIDEventGetFloatValue", getFloat);
    }
};

class HostSensors : public SensorSource {
  public:
    HostSensors(const EventSystem& system, id client, NSArray* services)
        : system_(system), client_(client), services_(services) {}

    std::vector<std::string> sensors() override {
        @autoreleasepool {
            std::vector<std::string> names;
            names.reserve(services_.count);
            for (id service in services_) {
                const id name = (__bridge_transfer id)system_.copyProperty(
                    (__bridge CFTypeRef)service, (__bridge CFStringRef) @"Product");
                names.push_back(propertyText(name).value_or(""));
            }
            return names;
        }
    }

    std::optional<double> celsius(std::size_t sensor) override {
        @autoreleasepool {
            if (sensor >= services_.count) return std::nullopt;
            const id event = (__bridge_transfer id)system_.copyEvent(
                (__bridge CFTypeRef)services_[sensor], temperatureEvent, 0, 0);
            if (event == nil) return std::nullopt;
            return system_.getFloat((__bridge CFTypeRef)event, temperatureField);
        }
    }

  private:
    EventSystem system_;
    [[maybe_unused]] id client_; // the services answer only while it lives
    NSArray* services_;
};

} // namespace

std::unique_ptr<SensorSource> hostSensors() {
    @autoreleasepool {
        EventSystem system{};
        if (!system.find()) return nullptr;
        const id client = (__bridge_transfer id)system.create(kCFAllocatorDefault);
        if (client == nil) return nullptr;
        NSDictionary* matching =
            @{@"PrimaryUsagePage" : @(vendorPage),
              @"PrimaryUsage" : @(temperatureSensor)};
        system.setMatching((__bridge CFTypeRef)client, (__bridge CFDictionaryRef)matching);
        const id services = (__bridge_transfer id)system.copyServices((__bridge CFTypeRef)client);
        if (![services isKindOfClass:NSArray.class]) return nullptr;
        return std::make_unique<HostSensors>(system, client, services);
    }
}

} // namespace tavero

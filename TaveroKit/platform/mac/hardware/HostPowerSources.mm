#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"

#import <IOKit/ps/IOPowerSources.h>

namespace tavero {

namespace {

class HostPowerSources : public MacPowerSources {
  public:
    std::vector<PropertyMap> descriptions() override {
        @autoreleasepool {
            // What is told of a source belongs to this and goes with it.
            const id info = (__bridge_transfer id)IOPSCopyPowerSourcesInfo();
            if (info == nil) return {};
            NSArray* sources =
                (__bridge_transfer NSArray*)IOPSCopyPowerSourcesList((__bridge CFTypeRef)info);
            std::vector<PropertyMap> all;
            for (id source in sources) {
                NSDictionary* description = (__bridge NSDictionary*)IOPSGetPowerSourceDescription(
                    (__bridge CFTypeRef)info, (__bridge CFTypeRef)source);
                if (description != nil) all.push_back(propertyMap(description));
            }
            return all;
        }
    }
};

} // namespace

std::shared_ptr<MacPowerSources> hostPowerSources() { return std::make_shared<HostPowerSources>(); }

} // namespace tavero

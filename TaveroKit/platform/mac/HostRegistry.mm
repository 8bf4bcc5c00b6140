#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"

#import <IOKit/IOKitLib.h>

namespace tavero {

namespace {

class HostRegistry : public MacRegistry {
  public:
    std::vector<PropertyMap> services(const std::string& className) override {
        io_iterator_t iterator = IO_OBJECT_NULL;
        // Takes the matching dictionary over.
        if (IOServiceGetMatchingServices(kIOMainPortDefault, IOServiceMatching(className.c_str()),
                                         &iterator) != KERN_SUCCESS)
            return {};
        std::vector<PropertyMap> services;
        while (const io_object_t service = IOIteratorNext(iterator)) {
            CFMutableDictionaryRef properties = nullptr;
            if (IORegistryEntryCreateCFProperties(service, &properties, kCFAllocatorDefault, 0) ==
                    KERN_SUCCESS &&
                properties != nullptr)
                services.push_back(propertyMap((__bridge_transfer NSDictionary*)properties));
            IOObjectRelease(service);
        }
        IOObjectRelease(iterator);
        return services;
    }
};

} // namespace

std::shared_ptr<MacRegistry> hostRegistry() { return std::make_shared<HostRegistry>(); }

} // namespace tavero

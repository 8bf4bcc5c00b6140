#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"

#import <IOKit/IOKitLib.h>

namespace tavero {

namespace {

// Calls `use` with every entry of an iterator, and releases them all.
template <typename Use>
void forEach(io_iterator_t iterator, Use use) {
    while (const io_object_t entry = IOIteratorNext(iterator)) {
        use(entry);
        IOObjectRelease(entry);
    }
    IOObjectRelease(iterator);
}

template <typename Use>
void forEachService(const std::string& className, Use use) {
    io_iterator_t iterator = IO_OBJECT_NULL;
    // Takes the matching dictionary over.
    if (IOServiceGetMatchingServices(kIOMainPortDefault, IOServiceMatching(className.c_str()),
                                     &iterator) == KERN_SUCCESS)
        forEach(iterator, use);
}

void addProperties(io_registry_entry_t entry, std::vector<PropertyMap>& all) {
    CFMutableDictionaryRef properties = nullptr;
    if (IORegistryEntryCreateCFProperties(entry, &properties, kCFAllocatorDefault, 0) ==
            KERN_SUCCESS &&
        properties != nullptr)
        all.push_back(propertyMap((__bridge_transfer NSDictionary*)properties));
}

class HostRegistry : public MacRegistry {
  public:
    std::vector<PropertyMap> services(const std::string& className) override {
        std::vector<PropertyMap> all;
        forEachService(className,
                       [&](io_registry_entry_t service) { addProperties(service, all); });
        return all;
    }

    std::vector<PropertyMap> children(const std::string& className) override {
        std::vector<PropertyMap> all;
        forEachService(className, [&](io_registry_entry_t service) {
            io_iterator_t iterator = IO_OBJECT_NULL;
            if (IORegistryEntryGetChildIterator(service, "IOService", &iterator) == KERN_SUCCESS)
                forEach(iterator, [&](io_registry_entry_t child) { addProperties(child, all); });
        });
        return all;
    }
};

} // namespace

std::shared_ptr<MacRegistry> hostRegistry() { return std::make_shared<HostRegistry>(); }

} // namespace tavero

#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"

namespace tavero {

namespace {

class HostBundles : public MacBundleInfo {
  public:
    std::optional<PropertyMap> info(const std::string& bundlePath,
                                    std::span<const char* const> keys) override {
        @autoreleasepool {
            NSString* path = [NSString stringWithUTF8String:bundlePath.c_str()];
            NSBundle* bundle = path ? [NSBundle bundleWithPath:path] : nil;
            if (bundle == nil) return std::nullopt;
            NSMutableDictionary* values = [NSMutableDictionary dictionary];
            for (const char* key : keys)
                if (NSString* name = [NSString stringWithUTF8String:key])
                    values[name] = [bundle objectForInfoDictionaryKey:name];
            return propertyMap(values);
        }
    }
};

} // namespace

std::shared_ptr<MacBundleInfo> hostBundles() { return std::make_shared<HostBundles>(); }

} // namespace tavero

#include "platform/mac/sound/HostSound.h"

#include "platform/mac/PrivateSymbols.h"

#import <Foundation/Foundation.h>

#include <utility>

namespace tavero {

namespace {

class HostPrivacyCalls final : public PrivacyCalls {
  public:
    std::optional<int> preflight() override {
        int (*preflight)(CFStringRef service, CFDictionaryRef options) = nullptr;
        if (!PrivateSymbols::find(PrivateSymbols::tcc(), "TCCAccessPreflight", preflight))
            return std::nullopt;
        return preflight(service(), nullptr);
    }

    // No prompt appears unless the program's bundle says what it captures audio for.
    bool request(std::function<void(bool granted)> completion) override {
        void (*request)(CFStringRef service, CFDictionaryRef options,
                        void (^completion)(Boolean granted)) = nullptr;
        if (!PrivateSymbols::find(PrivateSymbols::tcc(), "TCCAccessRequest", request)) return false;
        request(service(), nullptr, ^(Boolean granted) {
          completion(granted != 0);
        });
        return true;
    }

  private:
    static CFStringRef service() { return (__bridge CFStringRef) @"kTCCServiceAudioCapture"; }
};

} // namespace

std::unique_ptr<PrivacyCalls> hostPrivacyCalls() { return std::make_unique<HostPrivacyCalls>(); }

} // namespace tavero

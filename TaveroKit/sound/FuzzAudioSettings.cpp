#include "sound/AudioSettings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

bool isFraction(double volume) { return volume >= 0 && volume <= 1; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto settings = tavero::decodedAudioSettings(text);
    if (!settings) return 0;
    for (const auto& [id, setting] : *settings) {
        if (!isFraction(setting.volume)) std::abort();
        for (const auto& [uid, volume] : setting.volumes)
            if (!isFraction(volume)) std::abort();
    }
    // What was read is what is written and read again.
    if (tavero::decodedAudioSettings(tavero::encoded(*settings)) != settings) std::abort();
    return 0;
}

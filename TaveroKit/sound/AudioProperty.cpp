#include "sound/AudioProperty.h"

namespace tavero::AudioProperty {

std::vector<std::uint32_t> array(AudioObjects& objects, AudioObjectID object,
                                 std::uint32_t selector, std::uint32_t scope) {
    return objects.words(object, {selector, scope}).value_or(std::vector<std::uint32_t>{});
}

std::optional<std::string> string(AudioObjects& objects, AudioObjectID object,
                                  std::uint32_t selector) {
    return objects.text(object, {selector});
}

} // namespace tavero::AudioProperty

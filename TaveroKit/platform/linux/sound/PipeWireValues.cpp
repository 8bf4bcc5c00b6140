#include "platform/linux/sound/PipeWireValues.h"

#include <pipewire/keys.h>
#include <spa/utils/dict.h>
#include <spa/utils/json.h>

#include <array>

namespace tavero::PipeWireValues {

namespace {

void take(std::string& value, const spa_dict* properties, const char* key) {
    if (const std::string_view told = text(properties, key); !told.empty()) value = told;
}

template <class Number>
void take(std::optional<Number>& value, const spa_dict* properties, const char* key) {
    if (const auto told = number<Number>(properties, key)) value = told;
}

} // namespace

std::string_view text(const spa_dict* properties, const char* key) {
    const char* value = properties ? spa_dict_lookup(properties, key) : nullptr;
    return value ? value : "";
}

std::string nameIn(std::string_view value) {
    // The parser looks one character past an escape that ends the text.
    const std::string json(value);
    std::array<spa_json, 2> at{};
    spa_json_init(&at[0], json.c_str(), json.size());
    if (spa_json_enter_object(&at[0], &at[1]) <= 0) return "";
    std::array<char, 64> key;
    while (spa_json_get_string(&at[1], key.data(), key.size()) > 0) {
        const char* found = nullptr;
        const int length = spa_json_next(&at[1], &found);
        if (length <= 0) return "";
        if (std::string_view(key.data()) != "name") continue;
        if (!spa_json_is_string(found, length)) return "";
        std::string name(static_cast<std::size_t>(length) + 1, '\0'); // never longer than written
        if (spa_json_parse_string(found, length, name.data()) <= 0) return "";
        name.resize(std::string_view(name.c_str()).size());
        return name;
    }
    return "";
}

std::string withName(std::string_view name) {
    std::string json = "{ \"name\": \"";
    for (const char character : name) {
        if (character == '"' || character == '\\') json += '\\';
        json += character;
    }
    return json + "\" }";
}

SoundNode::Kind kindOf(std::string_view mediaClass) {
    using enum SoundNode::Kind;
    if (mediaClass == "Audio/Sink") return sink;
    if (mediaClass == "Audio/Duplex") return duplex;
    if (mediaClass == "Audio/Source" || mediaClass.starts_with("Audio/Source/")) return source;
    if (mediaClass == "Stream/Output/Audio") return playback;
    if (mediaClass == "Stream/Input/Audio") return capture;
    return other; // also our own streams, which are "…/Internal"
}

void describe(SoundNode& node, const spa_dict* properties) {
    if (const std::string_view told = text(properties, PW_KEY_MEDIA_CLASS); !told.empty()) {
        node.mediaClass = told;
        node.kind = kindOf(told);
    }
    take(node.name, properties, PW_KEY_NODE_NAME);
    take(node.description, properties, PW_KEY_NODE_DESCRIPTION);
    take(node.nick, properties, PW_KEY_NODE_NICK);
    take(node.appName, properties, PW_KEY_APP_NAME);
    take(node.mediaName, properties, PW_KEY_MEDIA_NAME);
    take(node.bus, properties, PW_KEY_DEVICE_BUS);
    take(node.formFactor, properties, PW_KEY_DEVICE_FORM_FACTOR);
    take(node.deviceAPI, properties, PW_KEY_DEVICE_API);
    take(node.factory, properties, "factory.name");
    take(node.profile, properties, "device.profile.name");
    take(node.client, properties, PW_KEY_CLIENT_ID);
    take(node.device, properties, PW_KEY_DEVICE_ID);
    take(node.profileDevice, properties, "card.profile.device");
    if (text(properties, PW_KEY_NODE_VIRTUAL) == "true") node.isVirtual = true;
    if (const auto serial = number<std::uint64_t>(properties, PW_KEY_OBJECT_SERIAL))
        node.serial = *serial;
}

} // namespace tavero::PipeWireValues

#include "sound/AudioSettings.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace tavero {

namespace {

using nlohmann::json;

// A slider's end rarely lies exactly at 1.
constexpr double fullVolume = 0.999;

// The member, or null if it is missing: a member that is null counts as missing.
const json* member(const json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

bool read(const json& value, double& volume) {
    if (!value.is_number()) return false;
    volume = std::clamp(value.get<double>(), 0.0, 1.0);
    return true;
}

bool read(const json& value, bool& flag) {
    if (!value.is_boolean()) return false;
    flag = value.get<bool>();
    return true;
}

bool read(const json& value, std::optional<std::string>& text) {
    if (!value.is_string()) return false;
    text = value.get<std::string>();
    return true;
}

bool read(const json& value, std::map<std::string, double>& volumes) {
    if (!value.is_object()) return false;
    for (const auto& [uid, volume] : value.items())
        if (!read(volume, volumes[uid])) return false;
    return true;
}

template <typename Value>
bool readMember(const json& object, const char* name, Value& value) {
    const json* found = member(object, name);
    return !found || read(*found, value);
}

std::optional<AudioSetting> setting(const json& object) {
    AudioSetting setting;
    if (object.is_object() && readMember(object, "volume", setting.volume) &&
        readMember(object, "volumes", setting.volumes) &&
        readMember(object, "muted", setting.muted) &&
        readMember(object, "outputUID", setting.outputUID))
        return setting;
    return std::nullopt;
}

json object(const AudioSetting& setting) {
    json object{{"volume", setting.volume}, {"volumes", setting.volumes}, {"muted", setting.muted}};
    if (setting.outputUID) object["outputUID"] = *setting.outputUID;
    return object;
}

} // namespace

double AudioSetting::volumeOn(const std::optional<std::string>& uid) const {
    const auto found = uid ? volumes.find(*uid) : volumes.end();
    return found == volumes.end() ? volume : found->second;
}

bool AudioSetting::isDefault() const {
    return volume >= fullVolume && !muted && !outputUID &&
           std::all_of(volumes.begin(), volumes.end(),
                       [](const auto& entry) { return entry.second >= fullVolume; });
}

bool AudioSetting::isUntouched(const std::optional<std::string>& uid) const {
    return volumeOn(uid) >= fullVolume && !muted && !outputUID;
}

std::string encoded(const AudioSettings& settings) {
    json top = json::object();
    for (const auto& [id, setting] : settings) top[id] = object(setting);
    return top.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<AudioSettings> decodedAudioSettings(std::string_view text) {
    const json top = json::parse(text, nullptr, /* allow_exceptions */ false);
    if (!top.is_object()) return std::nullopt;
    AudioSettings settings;
    for (const auto& [id, value] : top.items()) {
        const std::optional<AudioSetting> read = setting(value);
        if (!read) return std::nullopt;
        settings[id] = *read;
    }
    return settings;
}

} // namespace tavero

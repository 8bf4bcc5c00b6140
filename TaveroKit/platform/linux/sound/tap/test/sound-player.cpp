// sound-player NAME WAVE [key=value...]: an app for tests that plays until its input ends.
//   WAVE      level: 0.8 all the time. impulse: 0.8 once in 6000 frames. count: frame n is n /
//   2^20. channels  1, 2 or 6; 2 if not said streams   how many play at once; 1 if not said target
//   the node to play to latency   e.g. 256/48000 others    go to the streams as properties
// A line on its input: "rest" pauses all streams, "play" lets them go on, "more" adds one.

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr float amplitude = 0.8f;

float level(std::uint32_t) { return amplitude; }
float impulse(std::uint32_t frame) { return frame % 6000 == 3000 ? amplitude : 0; }
float count(std::uint32_t frame) {
    return static_cast<float>(frame % (1u << 20)) / static_cast<float>(1u << 20);
}

struct Settings {
    std::string name;
    float (*wave)(std::uint32_t frame) = level;
    std::uint32_t channels = 2;
    std::map<std::string, std::string> properties;
};

class Player {
  public:
    Player(pw_core* core, const Settings& settings) : settings_(settings) {
        pw_properties* properties = pw_properties_new(nullptr, nullptr);
        for (const auto& [key, value] : settings.properties)
            pw_properties_set(properties, key.c_str(), value.c_str());
        pw_properties_set(properties, PW_KEY_NODE_NAME, settings.name.c_str());
        stream_ = pw_stream_new(core, settings.name.c_str(), properties);
        events_.version = PW_VERSION_STREAM_EVENTS;
        events_.process = [](void* self) { static_cast<Player*>(self)->play(); };
        pw_stream_add_listener(stream_, &hook_, &events_, this);
        connect();
    }
    ~Player() { pw_stream_destroy(stream_); }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    void setActive(bool isActive) { pw_stream_set_active(stream_, isActive); }

  private:
    void connect() {
        spa_audio_info_raw format{};
        format.format = SPA_AUDIO_FORMAT_F32;
        format.rate = 48000;
        format.channels = settings_.channels;
        static constexpr std::array places = {SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR,
                                              SPA_AUDIO_CHANNEL_FC, SPA_AUDIO_CHANNEL_LFE,
                                              SPA_AUDIO_CHANNEL_RL, SPA_AUDIO_CHANNEL_RR};
        for (std::uint32_t i = 0; i < settings_.channels; ++i) format.position[i] = places[i];
        if (settings_.channels == 1) format.position[0] = SPA_AUDIO_CHANNEL_MONO;
        std::array<std::uint8_t, 1024> memory;
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, memory.data(), memory.size());
        const spa_pod* pod = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
        pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                          static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT |
                                                       PW_STREAM_FLAG_MAP_BUFFERS |
                                                       PW_STREAM_FLAG_RT_PROCESS),
                          &pod, 1);
    }

    void play() {
        pw_buffer* buffer = pw_stream_dequeue_buffer(stream_);
        if (buffer == nullptr) return;
        const spa_data& data = buffer->buffer->datas[0];
        const std::uint32_t stride = settings_.channels * std::uint32_t{sizeof(float)};
        std::uint32_t frames = data.maxsize / stride;
        if (buffer->requested != 0)
            frames = static_cast<std::uint32_t>(std::min<std::uint64_t>(frames, buffer->requested));
        auto* to = static_cast<float*>(data.data);
        for (std::uint32_t i = 0; i < frames; ++i, ++frame_)
            to = std::fill_n(to, settings_.channels, settings_.wave(frame_));
        data.chunk->offset = 0;
        data.chunk->stride = static_cast<std::int32_t>(stride);
        data.chunk->size = frames * stride;
        pw_stream_queue_buffer(stream_, buffer);
    }

    Settings settings_;
    pw_stream_events events_{};
    spa_hook hook_{};
    pw_stream* stream_ = nullptr;
    std::uint32_t frame_ = 0;
};

// What the command line says; the number of streams comes back.
int read(int argc, char** argv, Settings& settings) {
    const std::map<std::string, float (*)(std::uint32_t)> waves = {
        {"level", level}, {"impulse", impulse}, {"count", count}};
    if (argc < 3 || !waves.contains(argv[2])) return 0;
    settings.name = argv[1];
    settings.wave = waves.at(argv[2]);
    int streams = 1;
    for (int i = 3; i < argc; ++i) {
        const std::string word = argv[i];
        const std::size_t at = word.find('=');
        if (at == std::string::npos) return 0;
        const std::string key = word.substr(0, at);
        const std::string value = word.substr(at + 1);
        if (key == "channels")
            settings.channels = static_cast<std::uint32_t>(std::stoul(value));
        else if (key == "streams")
            streams = std::stoi(value);
        else if (key == "target")
            settings.properties[PW_KEY_TARGET_OBJECT] = value;
        else if (key == "latency")
            settings.properties[PW_KEY_NODE_LATENCY] = value;
        else
            settings.properties[key] = value;
    }
    return streams;
}

} // namespace

int main(int argc, char** argv) {
    Settings settings;
    const int streams = read(argc, argv, settings);
    if (streams == 0) {
        std::cerr << "usage: sound-player NAME level|impulse|count [key=value...]\n";
        return 2;
    }
    pw_init(nullptr, nullptr);
    pw_thread_loop* loop = pw_thread_loop_new("sound-player", nullptr);
    pw_context* context = pw_context_new(pw_thread_loop_get_loop(loop), nullptr, 0);
    pw_thread_loop_start(loop);
    pw_thread_loop_lock(loop);
    pw_core* core = pw_context_connect(context, nullptr, 0);
    if (core == nullptr) return 1;
    std::vector<std::unique_ptr<Player>> players;
    players.reserve(static_cast<std::size_t>(streams));
    for (int i = 0; i < streams; ++i) players.push_back(std::make_unique<Player>(core, settings));
    pw_thread_loop_unlock(loop);
    for (std::string line; std::getline(std::cin, line);) {
        pw_thread_loop_lock(loop);
        if (line == "more")
            players.push_back(std::make_unique<Player>(core, settings));
        else
            for (const auto& player : players) player->setActive(line == "play");
        pw_thread_loop_unlock(loop);
    }
    pw_thread_loop_stop(loop);
    players.clear();
    pw_context_destroy(context);
    pw_thread_loop_destroy(loop);
}

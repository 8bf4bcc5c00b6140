#include "platform/sim/SimAudioCycle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace tavero {

namespace {

constexpr float microphoneLoudness = 1;

// A stream's samples, the channels of a frame side by side.
struct Block {
    Block(std::uint32_t channelCount, std::uint32_t frames)
        : channels(channelCount), samples(std::size_t{channelCount} * frames) {}

    std::uint32_t channels;
    std::vector<float> samples;

    AudioBuffer buffer() {
        return {.channels = channels,
                .bytes = static_cast<std::uint32_t>(samples.size() * sizeof(float)),
                .data = samples.data()};
    }
    float& at(std::size_t frame, std::size_t channel) {
        return samples[frame * channels + channel];
    }
};

// Adds a tone of this amplitude, which goes up and down with each frame.
void addTone(Block& block, std::array<float, 2> loudness) {
    for (std::size_t i = 0; i < block.samples.size(); ++i) {
        const std::size_t frame = i / block.channels;
        const float amplitude = loudness[i % block.channels % loudness.size()];
        block.samples[i] += frame % 2 == 0 ? -amplitude : amplitude;
    }
}

std::vector<AudioBuffer> buffers(std::vector<Block>& blocks) {
    std::vector<AudioBuffer> list;
    list.reserve(blocks.size());
    for (Block& block : blocks) list.push_back(block.buffer());
    return list;
}

float magnitude(float sample) {
    return std::isfinite(sample) ? std::abs(sample) : std::numeric_limits<float>::infinity();
}

class Cycle {
  public:
    Cycle(const SimAudio& audio, std::uint32_t frames) : audio_(audio), frames_(frames) {
        for (const SimAudioDevice& device : audio_.devices)
            mixes_.emplace(device.id, blocks(device.output.streams));
    }

    SimAudioHeard run() {
        for (const SimAudioProcess& process : audio_.processes)
            if (process.plays && !isMuted(process)) play(process);
        for (const SimAudioAggregate& aggregate : audio_.aggregates)
            if (aggregate.isRunning) call(aggregate);
        return heard();
    }

  private:
    std::vector<Block> blocks(const std::vector<std::uint32_t>& streams) const {
        std::vector<Block> all;
        all.reserve(streams.size());
        for (std::uint32_t channels : streams) all.emplace_back(channels, frames_);
        return all;
    }

    bool isMuted(const SimAudioProcess& process) const {
        return std::any_of(audio_.taps.begin(), audio_.taps.end(), [&](const auto& tap) {
            return tap.description.muteBehavior == TapDescription::MuteBehavior::muted &&
                   audio_.passes(process, tap);
        });
    }

    void play(const SimAudioProcess& process) {
        const SimAudioDevice* device = audio_.destination(process);
        if (!device) return;
        // A stereo app uses the first stream alone.
        std::vector<Block>& mix = mixes_.at(device->id);
        if (!mix.empty()) addTone(mix.front(), process.loudness);
    }

    // A mixdown is stereo; what is taken from a stream has its channels.
    std::uint32_t channels(const SimAudioTap& tap) const {
        const std::optional<std::string>& uid = tap.description.deviceUID;
        const SimAudioDevice* device = uid ? audio_.device(*uid) : nullptr;
        return device && !device->output.streams.empty() ? device->output.streams.front() : 2;
    }

    Block taken(const SimAudioTap& tap) const {
        Block block(channels(tap), frames_);
        if (audio_.permission != AudioCapturePermission::Status::granted) return block;
        for (const SimAudioProcess& process : audio_.processes)
            if (process.plays && !process.isProtected && audio_.passes(process, tap))
                addTone(block, process.loudness);
        return block;
    }

    std::vector<Block> input(const SimAudioAggregate& aggregate) const {
        std::vector<Block> all;
        for (const std::string& uid : aggregate.description.subdevices)
            for (Block& microphone : blocks(audio_.device(uid)->input.streams)) {
                addTone(microphone, {microphoneLoudness, microphoneLoudness});
                all.push_back(std::move(microphone));
            }
        for (const AggregateDescription::Tap& part : aggregate.description.taps)
            if (const SimAudioTap* tap = audio_.tap(part.uid)) all.push_back(taken(*tap));
        return all;
    }

    void call(const SimAudioAggregate& aggregate) {
        std::vector<Block> inputs = input(aggregate);
        for (const SimAudioIOProc& proc : aggregate.procs) {
            if (!proc.isStarted) continue;
            std::vector<Block> outputs;
            for (const std::string& uid : aggregate.description.subdevices)
                for (Block& block : blocks(audio_.device(uid)->output.streams))
                    outputs.push_back(std::move(block));
            proc.block.call(proc.block.context, buffers(inputs), buffers(outputs));
            add(aggregate, outputs);
        }
    }

    void add(const SimAudioAggregate& aggregate, const std::vector<Block>& outputs) {
        auto written = outputs.begin();
        for (const std::string& uid : aggregate.description.subdevices)
            for (Block& mixed : mixes_.at(audio_.device(uid)->id)) {
                std::transform(mixed.samples.begin(), mixed.samples.end(), written->samples.begin(),
                               mixed.samples.begin(), std::plus());
                ++written;
            }
    }

    SimAudioHeard heard() {
        SimAudioHeard all;
        for (auto& [device, mix] : mixes_) {
            std::vector<float>& amplitudes = all[device];
            for (Block& block : mix)
                for (std::size_t channel = 0; channel < block.channels; ++channel) {
                    float loudest = 0;
                    for (std::size_t frame = 0; frame < frames_; ++frame)
                        loudest = std::max(loudest, magnitude(block.at(frame, channel)));
                    amplitudes.push_back(loudest);
                }
        }
        return all;
    }

    const SimAudio& audio_;
    std::uint32_t frames_;
    std::map<AudioObjectID, std::vector<Block>> mixes_; // of each device, stream by stream
};

} // namespace

SimAudioHeard simAudioCycle(const SimAudio& audio, std::uint32_t frames) {
    return Cycle(audio, frames).run();
}

} // namespace tavero

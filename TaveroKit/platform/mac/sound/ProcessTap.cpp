#include "platform/mac/sound/ProcessTap.h"

#include <span>
#include <utility>

namespace tavero {

namespace {

constexpr const char* tapName = "Tavero";
constexpr const char* aggregatePrefix = "com.brimfold.tavero.app-audio.";
// A meter needs no low latency, and bigger blocks cost less.
constexpr std::uint32_t meterFrames = 2048;

// The real-time block. All that it is given is the cells, so that nothing of a tap being torn down
// is touched. An output that also has inputs brings them along, before the tap's one stream: what
// comes from a microphone must never be played.
void play(void* context, std::span<const AudioBuffer> input, std::span<const AudioBuffer> output) {
    TapCells& cells = *static_cast<TapCells*>(context);
    const auto tapped = input.empty() ? input : input.last(1);
    render(tapped, output, cells.gain.load(std::memory_order_relaxed), cells.peak, cells.recent,
           cells.latest);
}

} // namespace

ProcessTap::ProcessTap(std::shared_ptr<MacAudioHardware> hardware,
                       std::shared_ptr<AudioObjects> objects, TapCells& cells)
    : hardware_(std::move(hardware)), objects_(std::move(objects)), cells_(cells) {}

std::optional<TapFailure> ProcessTap::start(const TapRequest& request) {
    using Step = TapFailure::Step;
    const std::string uuid = hardware_->makeUUID();
    if (const std::int32_t status = createTap(request, uuid)) return TapFailure{Step::tap, status};
    if (const std::int32_t status = createAggregate(request, uuid))
        return TapFailure{Step::aggregate, status};
    if (request.listenOnly)
        objects_->set(aggregateID_, {AudioSelector::bufferFrameSize}, meterFrames);
    if (const std::int32_t status = createProc()) return TapFailure{Step::ioProc, status};
    if (const std::int32_t status = hardware_->start(aggregateID_, procID_))
        return TapFailure{Step::start, status};
    return std::nullopt;
}

std::int32_t ProcessTap::createTap(const TapRequest& request, const std::string& uuid) {
    using Mute = TapDescription::MuteBehavior;
    TapDescription description;
    description.processes = request.processObjects;
    if (!request.listenOnly) description.deviceUID = request.sourceUID;
    description.uuid = uuid;
    description.name = tapName;
    description.isPrivate = true;
    description.muteBehavior = request.listenOnly ? Mute::unmuted : Mute::muted;
    return hardware_->createTap(description, tapID_);
}

std::int32_t ProcessTap::createAggregate(const TapRequest& request, const std::string& tapUUID) {
    AggregateDescription description;
    description.name = tapName;
    description.uid = aggregatePrefix + hardware_->makeUUID();
    description.main = request.outputUID;
    description.isPrivate = true;
    description.isStacked = false;
    description.tapAutoStart = true;
    description.subdevices = {request.outputUID};
    description.taps = {{.uid = tapUUID, .drift = true}};
    return hardware_->createAggregate(description, aggregateID_);
}

std::int32_t ProcessTap::createProc() {
    return hardware_->createIOProc(aggregateID_, {.call = play, .context = &cells_}, procID_);
}

bool ProcessTap::isRunning() {
    return aggregateID_ != 0 &&
           objects_->word(aggregateID_, {AudioSelector::isRunning}).value_or(0) != 0;
}

ProcessTap::~ProcessTap() {
    const bool hadProc = procID_ != nullptr;
    if (aggregateID_ != 0) {
        if (hadProc) {
            hardware_->stop(aggregateID_, procID_);
            hardware_->destroyIOProc(aggregateID_, procID_);
        }
        hardware_->destroyAggregate(aggregateID_);
    }
    if (tapID_ != 0) hardware_->destroyTap(tapID_);
    if (hadProc) hardware_->drain();
}

ProcessTaps::ProcessTaps(std::shared_ptr<MacAudioHardware> hardware,
                         std::shared_ptr<AudioObjects> objects)
    : hardware_(std::move(hardware)), objects_(std::move(objects)) {}

AudioTapSource::Result ProcessTaps::start(const TapRequest& request, TapCells& cells) {
    auto tap = std::make_unique<ProcessTap>(hardware_, objects_, cells);
    if (const auto failure = tap->start(request)) return *failure;
    return tap;
}

} // namespace tavero

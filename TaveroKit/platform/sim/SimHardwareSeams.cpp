#include "platform/sim/SimHardwareSeams.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

namespace {

using Record = MacController::Record;

using namespace ControllerRecord;

constexpr std::byte keyNotFound{0x84};
constexpr std::byte badCommand{0x82};

// Four characters stand in a record from the last to the first.
std::string fourCharacters(std::span<const std::byte, MacController::recordSize> record,
                           std::size_t at) {
    const auto bytes = record.subspan(at, 4);
    std::string text;
    std::transform(bytes.rbegin(), bytes.rend(), std::back_inserter(text),
                   [](std::byte byte) { return std::to_integer<char>(byte); });
    return text;
}

class SimController : public MacController {
  public:
    explicit SimController(std::shared_ptr<SimTimeline> timeline)
        : timeline_(std::move(timeline)) {}

    std::optional<Record> call(std::span<const std::byte, recordSize> request) override {
        return timeline_->read([&](const SimState& state) {
            const auto found = state.hardware.controller.find(fourCharacters(request, keyAt));
            Record answer{};
            if (found == state.hardware.controller.end())
                answer[resultAt] = keyNotFound;
            else
                tell(found->second, request[commandAt], answer);
            return std::optional(answer);
        });
    }

  private:
    static void tell(const SimControllerValue& value, std::byte command, Record& answer) {
        if (command == readKeyInfo) {
            for (std::size_t i = 0; i < 4; ++i)
                answer[sizeAt + i] = static_cast<std::byte>(value.bytes.size() >> 8 * i);
            std::transform(value.type.rbegin(), value.type.rend(), answer.begin() + typeAt,
                           [](char character) { return static_cast<std::byte>(character); });
        } else if (command == readBytes) {
            std::copy_n(value.bytes.begin(), std::min(value.bytes.size(), recordSize - bytesAt),
                        answer.begin() + bytesAt);
        } else {
            answer[resultAt] = badCommand;
        }
    }

    std::shared_ptr<SimTimeline> timeline_;
};

class SimPowerSources : public MacPowerSources {
  public:
    explicit SimPowerSources(std::shared_ptr<SimTimeline> timeline)
        : timeline_(std::move(timeline)) {}

    std::vector<PropertyMap> descriptions() override {
        return timeline_->read([](const SimState& state) { return state.hardware.powerSources; });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

class SimSensors : public SensorSource {
  public:
    explicit SimSensors(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::vector<std::string> sensors() override {
        return timeline_->read([](const SimState& state) {
            std::vector<std::string> names;
            for (const SimSensor& sensor : state.hardware.sensors) names.push_back(sensor.name);
            return names;
        });
    }
    std::optional<double> celsius(std::size_t sensor) override {
        return timeline_->read([&](const SimState& state) {
            const std::vector<SimSensor>& sensors = state.hardware.sensors;
            return sensor < sensors.size() ? sensors[sensor].celsius : std::nullopt;
        });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace

std::shared_ptr<MacController> simController(std::shared_ptr<SimTimeline> timeline) {
    return std::make_shared<SimController>(std::move(timeline));
}

std::shared_ptr<MacPowerSources> simPowerSources(std::shared_ptr<SimTimeline> timeline) {
    return std::make_shared<SimPowerSources>(std::move(timeline));
}

std::unique_ptr<SensorSource> simSensors(std::shared_ptr<SimTimeline> timeline) {
    return std::make_unique<SimSensors>(std::move(timeline));
}

} // namespace tavero

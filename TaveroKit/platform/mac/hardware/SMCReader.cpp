#include "platform/mac/hardware/SMCReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>
#include <utility>

namespace tavero {

namespace {

using Record = MacController::Record;

using namespace ControllerRecord;

constexpr std::uint32_t mostBytes = MacController::recordSize - bytesAt;

constexpr std::byte success{0};

constexpr int mostFans = 10; // more would not go into the four characters of a key

// Four characters as one number, the first in the top byte. `four` has four.
constexpr std::uint32_t code(std::string_view four) {
    std::uint32_t code = 0;
    for (const char character : four.substr(0, 4))
        code = code << 8 | static_cast<unsigned char>(character);
    return code;
}

void put(Record& record, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) record[at + i] = static_cast<std::byte>(number >> 8 * i);
}

std::uint32_t get(std::span<const std::byte> bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | std::to_integer<std::uint32_t>(bytes[at + i]);
    return number;
}

// Absent if the call fails or the controller says no.
std::optional<Record> ask(MacController& controller, const Record& request) {
    std::optional<Record> answer = controller.call(request);
    if (answer && (*answer)[resultAt] != success) answer.reset();
    return answer;
}

} // namespace

struct SMCReader::Value {
    std::uint32_t type = 0;
    std::size_t size = 0; // 1 to mostBytes
    std::array<std::byte, mostBytes> bytes{};
};

SMCReader::SMCReader(std::shared_ptr<MacController> controller)
    : controller_(std::move(controller)) {}

SMCSnapshot SMCReader::read() {
    SMCSnapshot snapshot;
    if (const std::optional<Value> count = value("FNum"))
        for (int fan = 0; fan < std::min(std::to_integer<int>(count->bytes[0]), mostFans); ++fan)
            if (const std::optional<double> rpm = readFloat("F" + std::to_string(fan) + "Ac"))
                snapshot.fanRPM.push_back(*rpm);
    snapshot.systemWatts = readFloat("PSTR");
    snapshot.batteryWatts = readFloat("PPBR");
    snapshot.chargerWatts = readFloat("PDTR");
    return snapshot;
}

std::optional<SMCReader::Value> SMCReader::value(std::string_view key) {
    Record request{};
    put(request, keyAt, code(key));
    request[commandAt] = readKeyInfo;
    const std::optional<Record> info = ask(*controller_, request);
    if (!info) return std::nullopt;
    const std::uint32_t size = get(*info, sizeAt);
    if (size == 0 || size > mostBytes) return std::nullopt;

    put(request, sizeAt, size);
    request[commandAt] = readBytes;
    const std::optional<Record> answer = ask(*controller_, request);
    if (!answer) return std::nullopt;
    Value value{.type = get(*info, typeAt), .size = size};
    std::copy_n(answer->begin() + bytesAt, size, value.bytes.begin());
    return value;
}

std::optional<double> SMCReader::readFloat(std::string_view key) {
    const std::optional<Value> value = this->value(key);
    if (!value) return std::nullopt;
    const auto byte = [&](std::size_t i) { return std::to_integer<unsigned>(value->bytes[i]); };
    if (value->type == code("ui8 ")) return byte(0);
    if (value->type == code("ui16") && value->size >= 2) return byte(0) << 8 | byte(1);
    if (value->type == code("flt ") && value->size >= 4)
        if (const auto number = std::bit_cast<float>(get(value->bytes, 0)); std::isfinite(number))
            return number;
    return std::nullopt;
}

} // namespace tavero

#include "platform/mac/hardware/SMCReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace {

// Answers with the next bytes of the input, whatever it is asked.
class FuzzedController : public tavero::MacController {
  public:
    explicit FuzzedController(std::span<const std::byte> answers) : answers_(answers) {}

    std::optional<Record> call(std::span<const std::byte, recordSize>) override {
        if (answers_.empty()) return std::nullopt;
        Record record{};
        const auto answer = answers_.first(std::min(record.size(), answers_.size()));
        std::copy(answer.begin(), answer.end(), record.begin());
        answers_ = answers_.subspan(answer.size());
        return record;
    }

  private:
    std::span<const std::byte> answers_;
};

} // namespace

// Any answers of a controller give at most ten fans, and numbers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavero::SMCReader reader(
        std::make_shared<FuzzedController>(std::as_bytes(std::span(data, size))));
    const tavero::SMCSnapshot snapshot = reader.read();
    if (snapshot.fanRPM.size() > 10) __builtin_trap();
    for (const double rpm : snapshot.fanRPM)
        if (!std::isfinite(rpm)) __builtin_trap();
    if (!std::isfinite(snapshot.systemWatts.value_or(0))) __builtin_trap();
    return 0;
}

#include "platform/linux/hardware/Hwmon.h"
#include "platform/linux/hardware/LinuxSensors.h"
#include "platform/linux/hardware/SysfsNumber.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

void expectWithin(std::optional<double> figure, double least, double most) {
    if (figure && !(*figure >= least && *figure <= most)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<std::int64_t> number = tavero::sysfsNumber(text);
    expectWithin(tavero::hwmonCelsius(number), -100, 200);
    expectWithin(tavero::hwmonRPM(number), 0, 40'000);
    expectWithin(tavero::hwmonWatts(number), 0, 100'000);
    const std::size_t split = text.find('\n');
    if (split == std::string_view::npos) return 0;
    const std::string_view chip = text.substr(0, split);
    const std::string name = tavero::sensorName(chip, text.substr(split + 1), {"Tdie"});
    if (name.empty() && !chip.empty()) std::abort();
    return 0;
}

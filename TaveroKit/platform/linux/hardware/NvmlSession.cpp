#include "platform/linux/hardware/NvmlSession.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <limits>
#include <span>

namespace tavero {

namespace {

constexpr std::uint64_t second = 1'000'000'000;
constexpr std::uint64_t retryPause = 30 * second;
constexpr std::uint64_t longestUnseen = 60 * second;
constexpr unsigned int usualSamples = 128;
constexpr unsigned int mostSamples = 8192;

double fraction(unsigned int percent) { return std::min(percent, 100u) / 100.0; }

std::int32_t pidOf(const NvmlLibrary::ProcessSample& sample) {
    constexpr auto most = static_cast<unsigned int>(std::numeric_limits<std::int32_t>::max());
    return sample.pid <= most ? static_cast<std::int32_t>(sample.pid) : 0;
}

} // namespace

NvmlAnswer NvmlSession::read(const std::vector<std::string>& addresses, std::uint64_t now) {
    NvmlAnswer answer{.at = now};
    if (addresses.empty() || hasAttachedOthers(addresses)) end();
    if (!addresses.empty() && begin(now))
        for (const std::string& address : addresses)
            if (Attached* attached = attach(address))
                if (const auto reading = readDevice(*attached, now))
                    answer.devices[address] = *reading;
    forgetProcesses(now);
    for (const auto& [pid, process] : times_) answer.times[pid] = process.time;
    return answer;
}

bool NvmlSession::begin(std::uint64_t now) {
    if (isOn_ || now < nextTry_) return isOn_;
    if (!library_) library_ = NvmlLibrary::open(name_);
    isOn_ = library_ && library_->init() == 0;
    if (!isOn_) nextTry_ = now + retryPause;
    return isOn_;
}

void NvmlSession::end() {
    attached_.clear();
    if (isOn_) library_->shutdown();
    isOn_ = false;
}

bool NvmlSession::hasAttachedOthers(const std::vector<std::string>& addresses) const {
    return std::any_of(attached_.begin(), attached_.end(), [&](const auto& entry) {
        return std::find(addresses.begin(), addresses.end(), entry.first) == addresses.end();
    });
}

NvmlSession::Attached* NvmlSession::attach(const std::string& address) {
    if (const auto known = attached_.find(address); known != attached_.end()) return &known->second;
    NvmlLibrary::Device device = nullptr;
    if (library_->deviceByAddress(address.c_str(), &device) != 0) return nullptr;
    return &attached_.emplace(address, Attached{.device = device}).first->second;
}

std::optional<NvmlReading> NvmlSession::readDevice(Attached& attached, std::uint64_t now) {
    NvmlReading reading;
    NvmlLibrary::Utilization used = {};
    NvmlLibrary::Memory memory = {};
    const bool tellsLoad = library_->utilization(attached.device, &used) == 0;
    const bool tellsMemory = library_->memory(attached.device, &memory) == 0;
    if (!tellsLoad && !tellsMemory) return std::nullopt;
    if (tellsLoad) reading.load = fraction(used.gpu);
    if (tellsMemory) reading.memory = memory.used;
    unsigned int cores = 0;
    if (library_->cores && library_->cores(attached.device, &cores) == 0) reading.cores = cores;
    reading.hasProcesses = readProcesses(attached, now);
    attached.readAt = now;
    return reading;
}

bool NvmlSession::readProcesses(Attached& attached, std::uint64_t now) {
    samples_.resize(std::max<std::size_t>(samples_.size(), usualSamples));
    auto count = static_cast<unsigned int>(samples_.size());
    const auto ask = [&] {
        return library_->processUtilization(attached.device, samples_.data(), &count,
                                            attached.lastSample);
    };
    NvmlLibrary::Result result = ask();
    if (result == NvmlLibrary::insufficientSize && count > samples_.size() &&
        count <= mostSamples) {
        samples_.resize(count);
        result = ask();
    }
    if (result != 0) return false;
    count = std::min(count, static_cast<unsigned int>(samples_.size()));

    // A process may have several samples, which then share the time.
    struct Sum {
        double used = 0;
        int samples = 0;
    };
    std::unordered_map<std::int32_t, Sum> sums;
    for (const NvmlLibrary::ProcessSample& sample : std::span(samples_).first(count)) {
        if (pidOf(sample) < 1) continue;
        Sum& sum = sums[pidOf(sample)];
        sum.used += fraction(sample.smUtil) + fraction(sample.encUtil) + fraction(sample.decUtil);
        ++sum.samples;
        attached.lastSample = std::max(attached.lastSample, sample.timeStamp);
    }
    const std::uint64_t elapsed =
        attached.readAt != 0 && now > attached.readAt ? now - attached.readAt : 0;
    for (const auto& [pid, sum] : sums) {
        ProcessTime& process = times_[pid];
        const double used = sum.used / sum.samples * static_cast<double>(elapsed);
        process.time = saturatingSum(process.time, static_cast<std::uint64_t>(used));
        process.seenAt = now;
    }
    return !sums.empty();
}

void NvmlSession::forgetProcesses(std::uint64_t now) {
    std::erase_if(times_, [&](const auto& entry) {
        return now - std::min(now, entry.second.seenAt) > longestUnseen;
    });
}

} // namespace tavero

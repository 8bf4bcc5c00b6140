// A library with the functions of NVIDIA's that are used, which answers what a test has set.

#include "platform/linux/hardware/test/FakeNvml.h"

#include <algorithm>
#include <thread>

using tavero::FakeNvml;
using tavero::NvmlLibrary;

namespace {

constexpr NvmlLibrary::Result uninitialized = 1;
constexpr NvmlLibrary::Result notSupported = 3;
constexpr NvmlLibrary::Result notFound = 6;
constexpr NvmlLibrary::Result isLost = 15;

} // namespace

extern "C" {

FakeNvml fakeNvml;

NvmlLibrary::Result nvmlInit_v2() {
    while (fakeNvml.isHanging) std::this_thread::yield();
    ++fakeNvml.inits;
    if (fakeNvml.initResult == 0) ++fakeNvml.on;
    return fakeNvml.initResult;
}

NvmlLibrary::Result nvmlShutdown() {
    --fakeNvml.on;
    return 0;
}

NvmlLibrary::Result nvmlDeviceGetHandleByPciBusId_v2(const char* address,
                                                     NvmlLibrary::Device* device) {
    if (fakeNvml.on <= 0) return uninitialized;
    for (FakeNvml::Device& known : fakeNvml.devices) {
        if (known.address != address) continue;
        ++known.attached;
        *device = reinterpret_cast<NvmlLibrary::Device>(&known);
        return 0;
    }
    return notFound;
}

NvmlLibrary::Result nvmlDeviceGetUtilizationRates(NvmlLibrary::Device device,
                                                  NvmlLibrary::Utilization* used) {
    const auto& known = *reinterpret_cast<FakeNvml::Device*>(device);
    if (known.isGone) return isLost;
    *used = {.gpu = known.load, .memory = 0};
    return 0;
}

NvmlLibrary::Result nvmlDeviceGetMemoryInfo(NvmlLibrary::Device device,
                                            NvmlLibrary::Memory* memory) {
    const auto& known = *reinterpret_cast<FakeNvml::Device*>(device);
    if (known.isGone) return isLost;
    *memory = {.total = 1ull << 40, .free = 0, .used = known.memory};
    return 0;
}

NvmlLibrary::Result nvmlDeviceGetNumGpuCores(NvmlLibrary::Device device, unsigned int* cores) {
    *cores = reinterpret_cast<FakeNvml::Device*>(device)->cores;
    return *cores != 0 ? 0 : notSupported;
}

NvmlLibrary::Result nvmlDeviceGetProcessUtilization(NvmlLibrary::Device device,
                                                    NvmlLibrary::ProcessSample* samples,
                                                    unsigned int* count, unsigned long long after) {
    if (!fakeNvml.tellsProcesses) return notSupported;
    fakeNvml.lastAskedAfter = after;
    std::vector<NvmlLibrary::ProcessSample> news;
    for (const auto& sample : reinterpret_cast<FakeNvml::Device*>(device)->samples)
        if (sample.timeStamp > after) news.push_back(sample);
    const unsigned int room = *count;
    *count = static_cast<unsigned int>(news.size());
    if (news.empty()) return notFound;
    if (room < news.size()) return NvmlLibrary::insufficientSize;
    std::copy(news.begin(), news.end(), samples);
    return 0;
}

} // extern "C"

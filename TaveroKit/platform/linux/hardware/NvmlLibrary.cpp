#include "platform/linux/hardware/NvmlLibrary.h"

#include <dlfcn.h>

namespace tavero {

namespace {

template <typename Function>
bool find(void* library, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(::dlsym(library, name));
    return function != nullptr;
}

} // namespace

std::optional<NvmlLibrary> NvmlLibrary::open(const std::string& name) {
    void* file = name.empty() ? nullptr : ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!file) return std::nullopt;
    NvmlLibrary library;
    const bool hasAll = find(file, "nvmlInit_v2", library.init) &&
                        find(file, "nvmlShutdown", library.shutdown) &&
                        find(file, "nvmlDeviceGetHandleByPciBusId_v2", library.deviceByAddress) &&
                        find(file, "nvmlDeviceGetUtilizationRates", library.utilization) &&
                        find(file, "nvmlDeviceGetMemoryInfo", library.memory) &&
                        find(file, "nvmlDeviceGetProcessUtilization", library.processUtilization);
    find(file, "nvmlDeviceGetNumGpuCores", library.cores);
    if (!hasAll) return std::nullopt;
    return library;
}

} // namespace tavero

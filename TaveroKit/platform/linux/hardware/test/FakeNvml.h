#pragma once

#include "platform/linux/hardware/NvmlLibrary.h"

#include <array>
#include <atomic>
#include <string>
#include <vector>

#include <dlfcn.h>

namespace tavero {

// What the stand-in for NVIDIA's library answers, and what was asked of it. A test reaches it by
// opening the stand-in, as the program opens the real one.
struct FakeNvml {
    struct Device {
        std::string address;
        unsigned int load = 0; // percent
        unsigned long long memory = 0;
        unsigned int cores = 0; // 0: it can't tell
        std::vector<NvmlLibrary::ProcessSample> samples;
        bool isGone = false;
        int attached = 0; // times
    };
    std::vector<Device> devices;
    NvmlLibrary::Result initResult = 0;
    std::atomic<int> on = 0; // init calls less shutdown calls
    std::atomic<int> inits = 0;
    bool tellsProcesses = true;
    unsigned long long lastAskedAfter = 0; // the time stamp that came with the last question
    std::atomic<bool> isHanging = false;

    // Set back to its first state.
    static FakeNvml& open(const char* library) {
        void* file = ::dlopen(library, RTLD_NOW | RTLD_LOCAL);
        auto* fake = static_cast<FakeNvml*>(::dlsym(file, "fakeNvml"));
        fake->devices.clear();
        fake->initResult = 0;
        fake->on = 0;
        fake->inits = 0;
        fake->tellsProcesses = true;
        fake->lastAskedAfter = 0;
        fake->isHanging = false;
        return *fake;
    }
};

} // namespace tavero

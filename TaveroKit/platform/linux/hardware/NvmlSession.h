#pragma once

#include "platform/linux/hardware/NvmlLibrary.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tavero {

// What a device tells.
struct NvmlReading {
    double load = 0;                   // a fraction; 0 if it doesn't tell
    std::uint64_t memory = 0;          // bytes in use; likewise
    std::optional<std::int64_t> cores; // absent from older drivers
    bool hasProcesses = false;         // some process used it just now

    bool operator==(const NvmlReading&) const = default;
};

struct NvmlAnswer {
    std::uint64_t at = 0;                                  // when it was asked for, nanoseconds
    std::map<std::string, NvmlReading> devices;            // by PCI address; those that answered
    std::unordered_map<std::int32_t, std::uint64_t> times; // by pid: GPU time, nanoseconds

    bool operator==(const NvmlAnswer&) const = default;
};

// Asks NVIDIA's library. Each call may take long, above all the first, which starts the devices.
//
// The library counts no GPU time; it tells how busy each process kept a device lately, which is
// taken for the time since the previous reading: arithmetic, encoding and decoding added up.
class NvmlSession {
  public:
    explicit NvmlSession(std::string library) : name_(std::move(library)) {}
    ~NvmlSession() { end(); }
    NvmlSession(const NvmlSession&) = delete;
    NvmlSession& operator=(const NvmlSession&) = delete;

    // These devices and no others. One that was asked before and now isn't is let go of, so that it
    // can sleep; with none of them the library is let go of. Tries a library that can't be used
    // again after half a minute.
    NvmlAnswer read(const std::vector<std::string>& addresses, std::uint64_t now);

  private:
    struct Attached {
        NvmlLibrary::Device device = nullptr;
        std::uint64_t readAt = 0;
        unsigned long long lastSample = 0; // its time stamp
    };
    struct ProcessTime {
        std::uint64_t time = 0;
        std::uint64_t seenAt = 0;
    };

    bool begin(std::uint64_t now);
    void end();
    bool hasAttachedOthers(const std::vector<std::string>& addresses) const;
    Attached* attach(const std::string& address);
    std::optional<NvmlReading> readDevice(Attached& attached, std::uint64_t now);
    bool readProcesses(Attached& attached, std::uint64_t now);
    void forgetProcesses(std::uint64_t now);

    std::string name_;
    std::optional<NvmlLibrary> library_;
    bool isOn_ = false;
    std::uint64_t nextTry_ = 0;
    std::map<std::string, Attached> attached_; // by PCI address
    std::unordered_map<std::int32_t, ProcessTime> times_;
    std::vector<NvmlLibrary::ProcessSample> samples_;
};

} // namespace tavero

#include "platform/mac/Host.h"

#include <array>
#include <cstdlib>
#include <mach/mach.h>
#include <net/if.h>
#include <sys/sysctl.h>

namespace tavero {

namespace {

class HostKernel : public MacKernel {
  public:
    ~HostKernel() override { mach_port_deallocate(mach_task_self(), host_); }

    std::optional<ProcessorLoad> processorLoad() override {
        natural_t cpuCount = 0;
        processor_info_array_t info = nullptr;
        mach_msg_type_number_t infoCount = 0;
        if (host_processor_info(host_, PROCESSOR_CPU_LOAD_INFO, &cpuCount, &info, &infoCount) !=
                KERN_SUCCESS ||
            info == nullptr)
            return std::nullopt;
        ProcessorLoad load{.cpuCount = cpuCount, .states = {info, info + infoCount}};
        vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(info),
                      infoCount * sizeof(integer_t));
        return load;
    }

    std::optional<VMStatistics> vmStatistics() override {
        VMStatistics words{};
        mach_msg_type_number_t count = words.size();
        if (host_statistics64(host_, HOST_VM_INFO64, reinterpret_cast<host_info64_t>(words.data()),
                              &count) != KERN_SUCCESS)
            return std::nullopt;
        return words;
    }

    std::optional<std::uint64_t> pageSize() override {
        vm_size_t size = 0;
        if (host_page_size(host_, &size) != KERN_SUCCESS) return std::nullopt;
        return size;
    }

    LoadAverage loadAverage() override {
        std::array<double, 3> load{};
        getloadavg(load.data(), static_cast<int>(load.size()));
        return {.one = load[0], .five = load[1], .fifteen = load[2]};
    }

    int sysctlByName(const char* name, void* buffer, std::size_t& size) override {
        return sysctlbyname(name, buffer, &size, nullptr, 0);
    }

    int sysctl(std::span<const int> numbers, void* buffer, std::size_t& size) override {
        return ::sysctl(const_cast<int*>(numbers.data()), static_cast<u_int>(numbers.size()),
                        buffer, &size, nullptr, 0);
    }

    std::optional<std::string> interfaceName(std::uint32_t index) override {
        std::array<char, IF_NAMESIZE + 1> name{};
        if (if_indextoname(index, name.data()) == nullptr) return std::nullopt;
        return name.data();
    }

  private:
    // Each call of mach_host_self adds a reference to the port, so it is asked once.
    const host_t host_ = mach_host_self();
};

} // namespace

std::shared_ptr<MacKernel> hostKernel() { return std::make_shared<HostKernel>(); }

} // namespace tavero

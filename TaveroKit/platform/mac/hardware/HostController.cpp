#include "platform/mac/Host.h"

#include <IOKit/IOKitLib.h>

namespace tavero {

namespace {

constexpr std::uint32_t connectionType = 0;
constexpr std::uint32_t exchangeRecords = 2; // the driver's selector

class HostController : public MacController {
  public:
    explicit HostController(io_connect_t connection) : connection_(connection) {}
    HostController(const HostController&) = delete;
    HostController& operator=(const HostController&) = delete;
    ~HostController() override { IOServiceClose(connection_); }

    std::optional<Record> call(std::span<const std::byte, recordSize> request) override {
        Record answer{};
        std::size_t size = answer.size();
        if (IOConnectCallStructMethod(connection_, exchangeRecords, request.data(), request.size(),
                                      answer.data(), &size) != KERN_SUCCESS)
            return std::nullopt;
        return answer;
    }

  private:
    io_connect_t connection_;
};

} // namespace

std::shared_ptr<MacController> hostController() {
    // Takes the matching dictionary over.
    const io_service_t service =
        IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("AppleSMC"));
    if (service == IO_OBJECT_NULL) return nullptr;
    io_connect_t connection = IO_OBJECT_NULL;
    const kern_return_t opened =
        IOServiceOpen(service, mach_task_self(), connectionType, &connection);
    IOObjectRelease(service);
    return opened == KERN_SUCCESS ? std::make_shared<HostController>(connection) : nullptr;
}

} // namespace tavero

#pragma once

#include "platform/NetworkSource.h"
#include "platform/mac/InterfaceList.h"
#include "platform/mac/MacKernel.h"

#include <map>
#include <memory>
#include <string>

namespace tavero {

// Physical interfaces of a Mac: those that it names "en". What is handed out never steps back: an
// interface that leaves keeps its last count, and one that starts again goes on from there.
class MacNetwork : public NetworkSource {
  public:
    explicit MacNetwork(std::shared_ptr<MacKernel> kernel);

    std::optional<std::vector<InterfaceCounters>> interfaces() override;

  private:
    // One reading of the kernel's counters. Those of the interface list wrap at 32 bits.
    struct Reading {
        std::uint32_t index = 0;
        bool wraps = false;
        InterfaceCounters counters;
    };
    struct Interface {
        InterfaceCounters total;
        Reading last;
        bool isPresent = false;

        void add(const Reading& reading);
    };

    std::optional<std::vector<std::byte>> readList();
    Reading read(const InterfaceMessage& message);

    std::shared_ptr<MacKernel> kernel_;
    std::map<std::string, Interface> interfaces_; // by name
};

} // namespace tavero

#pragma once

#include "platform/SystemSource.h"
#include "platform/mac/MacKernel.h"

#include <memory>

namespace tavero {

// The boot time by the sysctl kern.boottime.
class MacSystem : public SystemSource {
  public:
    explicit MacSystem(std::shared_ptr<MacKernel> kernel);

    std::optional<Date> bootTime() override;

  private:
    std::shared_ptr<MacKernel> kernel_;
};

} // namespace tavero

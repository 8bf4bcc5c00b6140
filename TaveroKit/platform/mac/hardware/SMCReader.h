#pragma once

#include "platform/ControllerSource.h"
#include "platform/mac/hardware/MacController.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace tavero {

// Fans and power by the keys of a Mac's system management controller. Every key is asked in two
// calls: how large its value is, and the value.
class SMCReader : public ControllerSource {
  public:
    explicit SMCReader(std::shared_ptr<MacController> controller);

    SMCSnapshot read() override;

  private:
    struct Value;

    std::optional<Value> value(std::string_view key);
    std::optional<double> readFloat(std::string_view key);

    std::shared_ptr<MacController> controller_;
};

} // namespace tavero

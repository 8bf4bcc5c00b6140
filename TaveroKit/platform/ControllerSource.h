#pragma once

#include "records/PowerSnapshot.h"

namespace tavero {

// Fans and the power that flows through the machine.
class ControllerSource {
  public:
    virtual ~ControllerSource() = default;

    // What can't be read is absent from it.
    virtual SMCSnapshot read() = 0;
};

} // namespace tavero

#pragma once

#include "records/Date.h"

#include <optional>

namespace tavero {

// What the operating system says of its own run.
class SystemSource {
  public:
    virtual ~SystemSource() = default;

    // When it started, by the wall clock. Absent if it does not say.
    virtual std::optional<Date> bootTime() = 0;
};

} // namespace tavero

#pragma once

#include "records/AppUsage.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"
#include "records/SystemActivity.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tavero {

// Whether the operating system itself is busy in a way worth telling. It must last to be told, and
// lingers when it is over, so that nothing flickers.
class SystemIssue {
  public:
    // Call on every pass that has apps.
    void update(const LiveSnapshot& snapshot);

    const std::optional<SystemActivity>& current() const { return current_; }
    // Since when the system is busy, or calm while an issue lingers. Never both.
    std::optional<Date> unusualSince() const { return unusualSince_; }
    std::optional<Date> calmSince() const { return calmSince_; }

    // The rows in their order, where the system's own is there only while there is something to
    // say about it, and says it: "macOS · Spotlight indexing".
    std::vector<AppUsage> present(std::vector<AppUsage> rows,
                                  std::string_view systemName = "macOS") const;

  private:
    std::optional<SystemActivity> current_;
    std::optional<Date> unusualSince_;
    std::optional<Date> calmSince_;
};

} // namespace tavero

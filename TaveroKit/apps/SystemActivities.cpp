#include "apps/SystemActivities.h"
namespace tavero {
std::optional<SystemActivity> unusualActivity(std::span<const ProcessSample>) {
    return std::nullopt;
}
} // namespace tavero

#include "desktop/Instance.h"

namespace tavero {

// The system itself starts an application once and activates the one that runs.
std::unique_ptr<Instance> claimInstance() { return std::make_unique<Instance>(); }

} // namespace tavero

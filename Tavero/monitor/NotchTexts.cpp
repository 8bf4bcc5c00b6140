#include "monitor/NotchTexts.h"

#include "presentation/NumberText.h"

namespace tavero {

std::string notchCPU(const LiveSnapshot& snapshot) {
    return percent(snapshot.cpu ? std::optional(snapshot.cpu->total()) : std::nullopt) + "%";
}

std::string notchMemory(const LiveSnapshot& snapshot) {
    return snapshot.memory ? gibibytes(snapshot.memory->used()) + " GB" : "";
}

} // namespace tavero

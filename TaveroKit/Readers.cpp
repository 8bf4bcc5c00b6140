#include "Readers.h"

#include "counters/CPUSampler.h"
#include "counters/MemoryReader.h"

#include <memory>
#include <utility>

namespace tavero {

Readers readers(Machine machine) {
    // The closures share what they read from; std::function wants them copyable.
    const auto sources = std::make_shared<Machine>(std::move(machine));
    Readers readers;
    if (sources->cpu)
        readers.cpu = [sources, sampler = CPUSampler()]() mutable {
            return sampler.sample(*sources->cpu);
        };
    if (sources->memory)
        readers.memory = [sources] { return MemoryReader::read(*sources->memory); };
    return readers;
}

} // namespace tavero

#include "platform/linux/processes/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count = 0;

} // namespace

// In a file of their own: a compiler that can see into one of them takes it for a mismatch.
void* operator new(std::size_t size) {
    ++count;
    if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

std::size_t tavero::allocationCount() { return count; }

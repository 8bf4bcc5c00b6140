#include "sound/tap/test/RealTimeWatch.h"

#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <time.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>

namespace {

std::atomic<std::int64_t> allocations = 0;
std::atomic<std::int64_t> locks = 0;
std::atomic<std::int64_t> waits = 0;

// In the program's own thread storage, since asking for any other kind may itself allocate.
__attribute__((tls_model("initial-exec"))) thread_local int depth = 0;

void note(std::atomic<std::int64_t>& count) {
    if (depth > 0) count.fetch_add(1, std::memory_order_relaxed);
}

// The function that would have been called were this file not there.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// Names of the C library: its own ways to the allocator that it lets others stand before. dlsym
// can't find the next one, since it allocates.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}
// NOLINTEND(bugprone-reserved-identifier)

extern "C" {

void* malloc(std::size_t size) {
    note(allocations);
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    note(allocations);
    return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
    note(allocations);
    return __libc_realloc(memory, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
    note(allocations);
    return __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    note(allocations);
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    note(allocations);
    void* const result = __libc_memalign(alignment, size);
    if (!result) return ENOMEM;
    *memory = result;
    return 0;
}
void free(void* memory) {
    if (memory) note(allocations);
    __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static auto* const real = next<int(pthread_mutex_t*)>("pthread_mutex_lock");
    note(locks);
    return real(mutex);
}
int pthread_mutex_trylock(pthread_mutex_t* mutex) {
    static auto* const real = next<int(pthread_mutex_t*)>("pthread_mutex_trylock");
    note(locks);
    return real(mutex);
}
int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* until) {
    static auto* const real =
        next<int(pthread_mutex_t*, const timespec*)>("pthread_mutex_timedlock");
    note(locks);
    return real(mutex, until);
}
int pthread_spin_lock(pthread_spinlock_t* lock) {
    static auto* const real = next<int(pthread_spinlock_t*)>("pthread_spin_lock");
    note(locks);
    return real(lock);
}
int pthread_rwlock_rdlock(pthread_rwlock_t* lock) {
    static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    note(locks);
    return real(lock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    note(locks);
    return real(lock);
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    static auto* const real = next<int(pthread_cond_t*, pthread_mutex_t*)>("pthread_cond_wait");
    note(waits);
    return real(condition, mutex);
}
int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                           const timespec* until) {
    static auto* const real =
        next<int(pthread_cond_t*, pthread_mutex_t*, const timespec*)>("pthread_cond_timedwait");
    note(waits);
    return real(condition, mutex, until);
}
int sem_wait(sem_t* semaphore) {
    static auto* const real = next<int(sem_t*)>("sem_wait");
    note(waits);
    return real(semaphore);
}
int nanosleep(const timespec* time, timespec* rest) {
    static auto* const real = next<int(const timespec*, timespec*)>("nanosleep");
    note(waits);
    return real(time, rest);
}
int clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* rest) {
    static auto* const real =
        next<int(clockid_t, int, const timespec*, timespec*)>("clock_nanosleep");
    note(waits);
    return real(clock, flags, time, rest);
}
int poll(pollfd* files, nfds_t count, int timeout) {
    static auto* const real = next<int(pollfd*, nfds_t, int)>("poll");
    note(waits);
    return real(files, count, timeout);
}
// A wait on an atomic value of C++ ends here.
long syscall(long number, ...) noexcept {
    static auto* const real = next<long(long, ...)>("syscall");
    va_list list;
    va_start(list, number);
    long arguments[6];
    for (long& argument : arguments) argument = va_arg(list, long);
    va_end(list);
    note(waits);
    return real(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                arguments[5]);
}

} // extern "C"

namespace tavero {

RealTimeFaults realTimeFaults() { return {allocations, locks, waits}; }

void resetRealTimeFaults() { allocations = locks = waits = 0; }

RealTimeScope::RealTimeScope() { ++depth; }
RealTimeScope::~RealTimeScope() { --depth; }

} // namespace tavero

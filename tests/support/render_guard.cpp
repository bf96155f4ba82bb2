// RenderGuard and the wrappers around the C library's functions that it counts.

#include "tests/support/render_guard.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <numeric>
#include <pthread.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZEPHYRA_RENDER_GUARD_WRAPS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) ||                         \
    __has_feature(realtime_sanitizer)
#define ZEPHYRA_RENDER_GUARD_WRAPS 0
#endif
#endif
#ifndef ZEPHYRA_RENDER_GUARD_WRAPS
#define ZEPHYRA_RENDER_GUARD_WRAPS 1
#endif

namespace zephyra {

namespace {
// Initial-exec: the first access must not itself allocate the thread's block.
[[gnu::tls_model("initial-exec")]] thread_local RenderGuard* innermost = nullptr;
} // namespace

RenderGuard::RenderGuard() noexcept : outer_(std::exchange(innermost, this)) {}

RenderGuard::~RenderGuard() {
    innermost = outer_;
}

bool RenderGuard::isActive() noexcept {
    return ZEPHYRA_RENDER_GUARD_WRAPS;
}

std::uint32_t RenderGuard::count(RenderOffence offence) const noexcept {
    return counts_[static_cast<std::size_t>(offence)];
}

std::uint32_t RenderGuard::total() const noexcept {
    return std::accumulate(counts_.begin(), counts_.end(), 0u);
}

std::string RenderGuard::firstOffender() const {
    RenderGuard* const standing = std::exchange(innermost, nullptr);
    std::string name = first_ ? first_ : "";
    innermost = standing;
    return name;
}

void RenderGuard::note(RenderOffence offence, const char* function) noexcept {
    RenderGuard* const guard = innermost;
    if (!guard) return;
    ++guard->counts_[static_cast<std::size_t>(offence)];
    if (!guard->first_) guard->first_ = function;
}

} // namespace zephyra

#if ZEPHYRA_RENDER_GUARD_WRAPS

using zephyra::RenderGuard;
using zephyra::RenderOffence;

extern "C" {
// The C library's own names for its allocator: looking malloc up would itself call malloc.
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

/// The next definition of function, looked up once; a guard that stands does not see the look-up.
template <typename Function>
Function* original(std::atomic<void*>& known, const char* name) {
    void* found = known.load(std::memory_order_relaxed);
    if (!found) {
        found = dlsym(RTLD_NEXT, name);
        known.store(found, std::memory_order_relaxed);
    }
    return reinterpret_cast<Function*>(found);
}

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
    RenderGuard::note(RenderOffence::Allocation, "malloc");
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    RenderGuard::note(RenderOffence::Allocation, "calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
    RenderGuard::note(RenderOffence::Allocation, "realloc");
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    RenderGuard::note(RenderOffence::Allocation, "aligned_alloc");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    RenderGuard::note(RenderOffence::Allocation, "posix_memalign");
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0 || alignment == 0)
        return EINVAL;
    void* const made = __libc_memalign(alignment, size);
    if (!made) return ENOMEM;
    *memory = made;
    return 0;
}

void free(void* memory) noexcept {
    // Freeing nothing costs nothing.
    if (memory) RenderGuard::note(RenderOffence::Free, "free");
    __libc_free(memory);
}

} // extern "C"

// Defines a wrapper that counts the offence and goes on to the C library's function.
#define ZEPHYRA_WRAP(offence, result, name, specifier, parameters, arguments)                      \
    extern "C" result name parameters specifier {                                                  \
        static std::atomic<void*> known{nullptr};                                                  \
        RenderGuard::note(RenderOffence::offence, #name);                                          \
        return original<result parameters>(known, #name) arguments;                                \
    }

ZEPHYRA_WRAP(Lock, int, pthread_mutex_lock, noexcept, (pthread_mutex_t * mutex), (mutex))
ZEPHYRA_WRAP(Lock, int, pthread_mutex_trylock, noexcept, (pthread_mutex_t * mutex), (mutex))
ZEPHYRA_WRAP(Lock, int, pthread_spin_lock, noexcept, (pthread_spinlock_t * lock), (lock))
ZEPHYRA_WRAP(Lock, int, pthread_rwlock_rdlock, noexcept, (pthread_rwlock_t * lock), (lock))
ZEPHYRA_WRAP(Lock, int, pthread_rwlock_wrlock, noexcept, (pthread_rwlock_t * lock), (lock))

ZEPHYRA_WRAP(Wait, int, pthread_cond_wait, , (pthread_cond_t * condition, pthread_mutex_t* mutex),
             (condition, mutex))
ZEPHYRA_WRAP(Wait, int, pthread_cond_timedwait, ,
             (pthread_cond_t * condition, pthread_mutex_t* mutex, const timespec* until),
             (condition, mutex, until))
ZEPHYRA_WRAP(Wait, int, pthread_cond_clockwait, ,
             (pthread_cond_t * condition, pthread_mutex_t* mutex, clockid_t clock,
              const timespec* until),
             (condition, mutex, clock, until))
ZEPHYRA_WRAP(Wait, int, pthread_join, , (pthread_t thread, void** result), (thread, result))
ZEPHYRA_WRAP(Wait, int, sem_wait, , (sem_t * semaphore), (semaphore))
ZEPHYRA_WRAP(Wait, int, nanosleep, , (const timespec* time, timespec* left), (time, left))
ZEPHYRA_WRAP(Wait, int, clock_nanosleep, ,
             (clockid_t clock, int flags, const timespec* time, timespec* left),
             (clock, flags, time, left))

ZEPHYRA_WRAP(SystemCall, ssize_t, write, , (int file, const void* bytes, std::size_t count),
             (file, bytes, count))
ZEPHYRA_WRAP(SystemCall, ssize_t, read, , (int file, void* bytes, std::size_t count),
             (file, bytes, count))
ZEPHYRA_WRAP(SystemCall, int, close, , (int file), (file))
ZEPHYRA_WRAP(SystemCall, int, munmap, noexcept, (void* memory, std::size_t size), (memory, size))
ZEPHYRA_WRAP(SystemCall, std::FILE*, fopen, , (const char* path, const char* mode), (path, mode))
ZEPHYRA_WRAP(SystemCall, std::size_t, fwrite, ,
             (const void* bytes, std::size_t size, std::size_t count, std::FILE* file),
             (bytes, size, count, file))
ZEPHYRA_WRAP(SystemCall, int, fputs, , (const char* text, std::FILE* file), (text, file))

// Two with a variable number of arguments. Waiting on an atomic goes through syscall.
extern "C" {

int open(const char* path, int flags, ...) {
    static std::atomic<void*> known{nullptr};
    RenderGuard::note(RenderOffence::SystemCall, "open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return original<int(const char*, int, ...)>(known, "open")(path, flags, mode);
}

long syscall(long number, ...) noexcept {
    static std::atomic<void*> known{nullptr};
    RenderGuard::note(RenderOffence::SystemCall, "syscall");
    long words[6];
    va_list rest;
    va_start(rest, number);
    for (long& word : words) word = va_arg(rest, long); // more than the kernel reads do no harm
    va_end(rest);
    return original<long(long, ...)>(known, "syscall")(number, words[0], words[1], words[2],
                                                       words[3], words[4], words[5]);
}

} // extern "C"

#endif

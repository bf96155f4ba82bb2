#include "tests/support/render_guard.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <iterator>
#include <malloc.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <unistd.h>
#include <utility>

namespace {

struct Watched {
    bool armed, quickLocks;
    unsigned calls, quick;
    const char* first;
    void* from[24]; // where the first came from
    int depth;
};
// In the program's own block of thread-local memory: reading it allocates nothing.
__attribute__((tls_model("initial-exec"))) thread_local constinit Watched watched{};

void count(const char* what) {
    if (!watched.armed || watched.calls++ > 0) return;
    watched.first = what;
    watched.armed = false;
    watched.depth = ::backtrace(watched.from, static_cast<int>(std::size(watched.from)));
    watched.armed = true;
}

/// What the name means to whoever does not link this file.
template <typename Function>
Function* next(Function*& known, const char* name) {
    if (!known) known = reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
    return known;
}

} // namespace

namespace zephyra {

RenderGuard::RenderGuard(Locks locks) {
    ::backtrace(watched.from, 1); // the first one loads a library
    watched.quickLocks = locks == Locks::quick;
    watched.armed = true;
}

RenderGuard::~RenderGuard() {
    watched.armed = false;
}

unsigned RenderGuard::quickLocks() {
    return std::exchange(watched.quick, 0);
}

std::string RenderGuard::report() {
    const unsigned calls = watched.calls;
    watched.calls = 0;
    if (calls > 0 && std::getenv("ZEPHYRA_SHOW_STACKS"))
        ::backtrace_symbols_fd(watched.from, watched.depth, STDERR_FILENO);
    return calls == 0 ? "" : std::to_string(calls) + ", first " + watched.first;
}

} // namespace zephyra

// The C library's functions under their own names: a program's definitions go before a library's.
extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

// NAME(parameters): counted, then done by what the C library calls it itself.
#define ZEPHYRA_COUNTED(result, name, parameters, done)                                            \
    result name parameters noexcept {                                                              \
        count(#name);                                                                              \
        return done;                                                                               \
    }
ZEPHYRA_COUNTED(void*, malloc, (size_t size), __libc_malloc(size))
ZEPHYRA_COUNTED(void*, calloc, (size_t number, size_t size), __libc_calloc(number, size))
ZEPHYRA_COUNTED(void*, realloc, (void* memory, size_t size), __libc_realloc(memory, size))
ZEPHYRA_COUNTED(void*, memalign, (size_t to, size_t size), __libc_memalign(to, size))
ZEPHYRA_COUNTED(void*, aligned_alloc, (size_t to, size_t size), __libc_memalign(to, size))
ZEPHYRA_COUNTED(int, posix_memalign, (void** memory, size_t to, size_t size),
                (*memory = __libc_memalign(to, size)) ? 0 : ENOMEM)
#undef ZEPHYRA_COUNTED
void free(void* memory) noexcept {
    if (memory) count("free");
    __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    static int (*known)(pthread_mutex_t*);
    if (watched.armed && watched.quickLocks) {
        if (::pthread_mutex_trylock(mutex) == 0) return ++watched.quick, 0;
        count("a lock that is held");
    } else {
        count("pthread_mutex_lock");
    }
    return next(known, "pthread_mutex_lock")(mutex);
}

// NAME(parameters)(arguments): counted, then done.
#define ZEPHYRA_COUNTED(result, name, parameters, arguments)                                       \
    result name parameters {                                                                       \
        static result(*known) parameters;                                                          \
        count(#name);                                                                              \
        return next(known, #name) arguments;                                                       \
    }
ZEPHYRA_COUNTED(int, pthread_rwlock_rdlock, (pthread_rwlock_t * lock) noexcept, (lock))
ZEPHYRA_COUNTED(int, pthread_rwlock_wrlock, (pthread_rwlock_t * lock) noexcept, (lock))
ZEPHYRA_COUNTED(int, pthread_cond_signal, (pthread_cond_t * condition) noexcept, (condition))
ZEPHYRA_COUNTED(int, pthread_cond_broadcast, (pthread_cond_t * condition) noexcept, (condition))
ZEPHYRA_COUNTED(int, pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex),
                (condition, mutex))
ZEPHYRA_COUNTED(int, sem_wait, (sem_t * semaphore), (semaphore))
ZEPHYRA_COUNTED(int, sem_post, (sem_t * semaphore) noexcept, (semaphore))
ZEPHYRA_COUNTED(int, poll, (pollfd * files, nfds_t number, int milliseconds),
                (files, number, milliseconds))
ZEPHYRA_COUNTED(int, nanosleep, (const timespec* time, timespec* left), (time, left))
ZEPHYRA_COUNTED(ssize_t, read, (int file, void* to, size_t bytes), (file, to, bytes))
ZEPHYRA_COUNTED(ssize_t, write, (int file, const void* from, size_t bytes), (file, from, bytes))
#undef ZEPHYRA_COUNTED

// std::atomic::wait and notify call the system by number; its arguments are six words at most.
long syscall(long number, ...) noexcept {
    static long (*known)(long, ...);
    va_list list;
    va_start(list, number);
    long words[6];
    for (long& word : words) word = va_arg(list, long);
    va_end(list);
    count("syscall");
    return next(known, "syscall")(number, words[0], words[1], words[2], words[3], words[4],
                                  words[5]);
}

} // extern "C"

// ZEPHYRA_NONBLOCKING: the real-time promise of the render path, as part of a function's signature.
//
// Four words name the threads in every doc comment:
//   RENDER  the host's audio thread: no lock, allocation, free, exception, system call or log;
//   MAIN    the thread that advances the run loop; everything that is not RENDER or WORKER;
//   WORKER  threads that read and decode files;
//   OFF     only while nothing renders.
#pragma once

#if defined(__clang__) && __clang_major__ >= 20
/// Goes where noexcept goes. The compiler checks callees (-Wfunction-effects) and the real-time
/// sanitizer checks at run time that nothing below allocates, locks or waits.
#define ZEPHYRA_NONBLOCKING noexcept [[clang::nonblocking]]
/// Brackets the fewest lines that call something the compiler cannot know to be real-time safe
/// (the math library). Each use says beside it why the call is safe.
#define ZEPHYRA_TRUST_NONBLOCKING_BEGIN                                                            \
    _Pragma("clang diagnostic push") _Pragma("clang diagnostic ignored \"-Wfunction-effects\"")
#define ZEPHYRA_TRUST_NONBLOCKING_END _Pragma("clang diagnostic pop")
#else
#define ZEPHYRA_NONBLOCKING noexcept
#define ZEPHYRA_TRUST_NONBLOCKING_BEGIN
#define ZEPHYRA_TRUST_NONBLOCKING_END
#endif

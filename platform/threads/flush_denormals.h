// FlushDenormals: while one lives, this thread treats denormals as zero (FTZ and DAZ).
#pragma once

#include "platform/threads/realtime.h"

#if defined(__SSE__) || defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace zephyra {

/// Decaying tails end in denormals, which cost a hundred times a normal number on most processors.
/// Every render call, offline too, runs inside one, so that the sound is the same everywhere. The
/// caller's mode comes back on destruction. Writing the mode drains the processor's pipeline, so
/// one inside another, or on a thread that flushes anyway, writes nothing. Any thread.
class FlushDenormals {
public:
#if defined(__SSE__) || defined(__x86_64__)
    FlushDenormals() ZEPHYRA_NONBLOCKING : saved_(_mm_getcsr()) {
        if (changes()) _mm_setcsr(saved_ | kFlushBits);
    }
    ~FlushDenormals() ZEPHYRA_NONBLOCKING {
        if (changes()) _mm_setcsr(saved_);
    }

private:
    static constexpr unsigned kFlushBits = 0x8040; // flush-to-zero and denormals-are-zero
    bool changes() const ZEPHYRA_NONBLOCKING {
        return (saved_ & kFlushBits) != kFlushBits;
    }
    unsigned saved_;
#elif defined(__aarch64__)
    FlushDenormals() ZEPHYRA_NONBLOCKING {
        asm volatile("mrs %0, fpcr" : "=r"(saved_));
        asm volatile("msr fpcr, %0" : : "r"(saved_ | (1ULL << 24)));
    }
    ~FlushDenormals() ZEPHYRA_NONBLOCKING {
        asm volatile("msr fpcr, %0" : : "r"(saved_));
    }

private:
    unsigned long long saved_ = 0;
#else
    FlushDenormals() ZEPHYRA_NONBLOCKING {}
    ~FlushDenormals() ZEPHYRA_NONBLOCKING {}
#endif

public:
    FlushDenormals(const FlushDenormals&) = delete;
    FlushDenormals& operator=(const FlushDenormals&) = delete;
};

} // namespace zephyra

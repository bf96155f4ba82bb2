// threadNanoseconds: the processor time of this thread, which other programs' work is not part of.
#pragma once

#include <ctime>

namespace zephyra {

/// Nanoseconds since some time in the past.
inline double threadNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

} // namespace zephyra

// renderSeconds: this machine's steady time as RENDER may read it.
#pragma once

#include "platform/threads/realtime.h"

#include <chrono>

namespace zephyra {

/// Seconds from some moment in the past, to measure how long something takes. Any thread.
inline double renderSeconds() ZEPHYRA_NONBLOCKING {
    // The kernel maps this clock into the process: reading it takes no system call and no lock.
    ZEPHYRA_TRUST_NONBLOCKING_BEGIN
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    ZEPHYRA_TRUST_NONBLOCKING_END
    return std::chrono::duration<double>(now).count();
}

} // namespace zephyra

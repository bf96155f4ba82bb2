#include "platform/threads/thread_priority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace zephyra {

void yieldToOthers() noexcept {
    constexpr int nice = 10; // a tenth of the usual share of a busy processor
    // On Linux a thread has a nice value of its own, under its id.
    static_cast<void>(::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), nice));
}

} // namespace zephyra

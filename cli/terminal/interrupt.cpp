#include "cli/terminal/interrupt.h"

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace zephyra {

namespace {

constexpr unsigned kSecondsToEnd = 3; // that a child has to leave nothing half-written

std::atomic<bool> stopRequested{false}; // workers ask, too
static_assert(std::atomic<bool>::is_always_lock_free);

void requestStop(int) {
    stopRequested = true;
}

void requestEnd(int) {
    ::alarm(kSecondsToEnd); // whose signal ends a process that hangs
    stopRequested = true;
}

} // namespace

void watchInterrupts() {
    struct sigaction stop = {};
    stop.sa_handler = requestStop;
    stop.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND); // a second one ends the program
    sigaction(SIGINT, &stop, nullptr);
    sigaction(SIGTERM, &stop, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void watchInterruptsOfParent() {
    struct sigaction stop = {};
    stop.sa_handler = requestEnd;
    stop.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &stop, nullptr);
    std::signal(SIGINT, SIG_IGN);
}

bool interrupted() noexcept {
    return stopRequested;
}

} // namespace zephyra

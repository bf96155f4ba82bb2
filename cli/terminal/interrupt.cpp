#include "cli/terminal/interrupt.h"

#include <csignal>
#include <unistd.h>

namespace zephyra {

namespace {

constexpr unsigned kSecondsToEnd = 3; // that a child has to leave nothing half-written

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int) {
    stopRequested = 1;
}

void requestEnd(int) {
    ::alarm(kSecondsToEnd); // whose signal ends a process that hangs
    stopRequested = 1;
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
    return stopRequested != 0;
}

} // namespace zephyra

// interrupted: whether the user asked the program to stop.
#pragma once

#include "cli/terminal/exit_code.h"

namespace zephyra {

/// From now on Ctrl-C and a polite kill only set a flag, so that no half-written file stays behind,
/// and writing to a closed pipe or beyond a size limit fails instead of ending the program. MAIN.
void watchInterrupts();

/// The same in a child process, which ends when its parent says so: Ctrl-C, which reaches both, is
/// left to the parent, and a request that comes twice does no harm. A child that has not ended 3 s
/// after the first is ended by a signal. MAIN.
void watchInterruptsOfParent();

/// Whether such a signal has come. Any thread.
bool interrupted() noexcept;

/// Whether long work is to go on, for what asks that. Any thread.
inline bool goesOn() noexcept {
    return !interrupted();
}

/// How a command ends that waited for another program and got no further. Any thread.
inline ExitCode failureOrInterrupt() noexcept {
    return interrupted() ? ExitCode::interrupted : ExitCode::failure;
}

} // namespace zephyra

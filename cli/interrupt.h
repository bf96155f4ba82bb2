// interrupted: whether the user asked the program to stop.
#pragma once

namespace zephyra {

/// From now on Ctrl-C and a polite kill only set a flag, so that no half-written file stays behind,
/// and writing to a closed pipe or beyond a size limit fails instead of ending the program. MAIN.
void watchInterrupts();

/// Whether such a signal has come. Any thread.
bool interrupted() noexcept;

} // namespace zephyra

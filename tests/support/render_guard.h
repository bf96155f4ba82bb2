// RenderGuard: notices what a thread may not call while it renders, in any library of the process.
#pragma once

#include <string>

namespace zephyra {

/// While one exists on a thread, allocations, frees, locks, waits and input or output of that
/// thread are counted, whoever makes them; they still happen. A program that links render_guard.cpp
/// has it.
class RenderGuard {
public:
    enum class Locks {
        none,  ///< each counts
        quick, ///< counted are only those that somebody else holds: JUCE's wrappers lock
    };
    explicit RenderGuard(Locks locks = Locks::none);
    ~RenderGuard();
    RenderGuard(const RenderGuard&) = delete;
    RenderGuard& operator=(const RenderGuard&) = delete;

    /// How many there were on this thread since the last call, and the first one's name:
    /// "3, first malloc"; empty for none. Its stack goes to standard error where the environment
    /// says ZEPHYRA_SHOW_STACKS. Outside a guard.
    static std::string report();
    /// How many locks there were since the last call that Locks::quick let pass. Outside a guard.
    static unsigned quickLocks();
};

} // namespace zephyra

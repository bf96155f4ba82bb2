// StreamFade: a stream's level on its way up or down, tick by tick on the run loop.
#pragma once

#include "platform/threads/run_loop.h"

#include <functional>

namespace zephyra {

/// Two chains of ticks, of which one runs: each tick schedules the next after kTick. MAIN.
class StreamFade {
public:
    static constexpr double kTick = 0.017; // seconds

    /// Called at every tick that a chain may run; it calls tickIn or tickOut back.
    explicit StreamFade(RunLoop& loop) : loop_(loop) {}
    ~StreamFade();
    StreamFade(const StreamFade&) = delete;
    StreamFade& operator=(const StreamFade&) = delete;

    enum class Outcome { aborted, running, ended };

    /// Prepares a chain: its step for a fade of so many seconds (0: one step), and ends the other.
    void beginIn(double seconds);
    void beginOut(double seconds);

    /// One tick of a chain: moves the multiplier and, while it runs, schedules next after kTick.
    Outcome tickIn(const std::function<void()>& next);
    Outcome tickOut(const std::function<void()>& next);

    /// Silent, and neither chain runs.
    void startAnew();

    /// The multiplier, 0..1.
    double multiplier() const { return _fade; }

private:
    void schedule(const std::function<void()>& next);

    RunLoop& loop_;
    RunLoop::Token pending_ = 0; // a chain that begins anew drops its own old tick
    double _fade = 0.0;
    double _incrIn = 0.0, _incrOut = 0.0; ///< per tick
    bool _abortFadeIn = false, _abortFadeOut = false;
};

} // namespace zephyra

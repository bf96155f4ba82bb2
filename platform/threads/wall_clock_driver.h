// WallClockDriver: the one thread that advances run loops in real time.
#pragma once

#include "platform/text/log.h"
#include "platform/threads/run_loop.h"

#include <memory>

namespace zephyra {

/// While one lives, its run loop is advanced every few milliseconds by the process's only driving
/// thread, window or not. While the run loop's clock is Clock::sample the thread leaves it alone,
/// and goes on from where it stands afterwards; while another thread is MAIN it does not wait for
/// it. One per run loop. Made and destroyed on any thread but RENDER, not inside a Scope or a task
/// of that run loop; on return from the destructor the thread is out of it for good.
class WallClockDriver {
public:
    // Seconds between two advances: what a host sends is to be heard 5 ms later, with 2 ms for what
    // MAIN is at.
    static constexpr double kPeriod = 0.002;

    /// loop must outlive this; log hears when no thread can be started.
    WallClockDriver(RunLoop& loop, Log& log);
    ~WallClockDriver();
    WallClockDriver(const WallClockDriver&) = delete;
    WallClockDriver& operator=(const WallClockDriver&) = delete;

private:
    struct Thread;
    struct Entry;
    std::shared_ptr<Thread> thread_; // shared by all drivers of the process
    std::shared_ptr<Entry> entry_;
};

} // namespace zephyra

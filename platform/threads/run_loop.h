// RunLoop: MAIN as an object, an event loop of posted tasks and timers that its driver advances.
#pragma once

#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

namespace zephyra {

/// Runs every task of one instance, one at a time, under one mutex: holding it is being MAIN.
/// Inside a task now() shows the task's due time, so that chains of delayed tasks keep their period
/// whatever the block size. Driven by the wall clock (WallClockDriver) or, when rendering offline,
/// by the renderer, which advances it by the length of each block. Tasks must not throw; empty ones
/// are ignored (token 0).
class RunLoop {
public:
    using Task = std::function<void()>;
    using Token = std::uint64_t; ///< 0 stands for none

    enum class Clock {
        wall,   ///< repeating timers skip ticks that are missed by more than kMostLateness
        sample, ///< no tick is ever skipped
    };
    static constexpr double kMostLateness = 0.25;    // seconds
    static constexpr double kLeastInterval = 0.0001; // seconds; keeps a catching-up advance finite

    RunLoop() = default;
    /// Nobody may be inside it any more; what is still queued is dropped.
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// Makes the calling thread MAIN while it lives; waits until it may. One inside another on the
    /// same thread is fine. Leaving the outermost runs what callOutside collected. Any thread but
    /// RENDER in real time.
    class Scope {
    public:
        explicit Scope(RunLoop& loop);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        RunLoop& loop_;
    };

    /// The same without waiting: false where another thread is MAIN right now. For what is drawn
    /// many times a second, which may as well show the moment before.
    class TryScope {
    public:
        explicit TryScope(RunLoop& loop) : loop_(loop.tryEnter() ? &loop : nullptr) {}
        ~TryScope() {
            if (loop_) loop_->leave();
        }
        TryScope(const TryScope&) = delete;
        TryScope& operator=(const TryScope&) = delete;
        explicit operator bool() const noexcept { return loop_ != nullptr; }

    private:
        RunLoop* loop_;
    };

    /// Runs task at the next advance, after those posted before. Any thread but RENDER.
    void post(Task task);

    /// Runs task once, seconds from now() (negative and not finite count as 0). MAIN.
    Token performAfter(double seconds, Task task);

    /// Runs task every interval seconds (above 0 and finite, else nothing and token 0; at least
    /// kLeastInterval), first after one. MAIN.
    Token addTimer(double interval, Task task);

    /// A timer of so many ticks a second, named after what displays use. MAIN.
    Token addDisplayLink(double framesPerSecond, Task task) {
        return addTimer(1.0 / framesPerSecond, std::move(task));
    }

    /// Polls task at the start of every advance and before every due time: how notices of RENDER
    /// are taken. MAIN.
    Token addSource(Task poll);

    /// Ends a delayed task, timer or source; a task may cancel itself. Unknown ones and 0 are
    /// ignored. MAIN.
    void cancel(Token token);

    /// Runs task once the mutex has been let go: calls to a host, a window or a picker, which may
    /// wait for somebody who waits for MAIN. In order, on the thread that called this; at once when
    /// it is not MAIN. The task may take a Scope. Any thread but RENDER.
    void callOutside(Task task);

    /// Seconds since the run loop was made, on its own clock. Any thread but RENDER.
    double now() const { return shown_; }

    /// Runs posted tasks, then everything due up to `to` in due order (at equal times in the order
    /// of their making), posted tasks in between. A time before now() or not finite counts as
    /// now(). A call from inside a task does nothing. Any thread but RENDER in real time.
    void advance(double to);

    /// What is due from here on is computed from 0 again, as in a run loop just made: a second
    /// stretch of a render then rounds as the first one did. now() and what waits go on. MAIN, not
    /// in a task.
    void beginStretch();
    /// Seconds of the stretch until now: since the last beginStretch(), else now(). MAIN.
    double stretch() const { return now_; }
    /// advance(), in seconds of the stretch.
    void advanceStretch(double to);

    /// What WallClockDriver calls, with the seconds since it began: advances as far as they grew
    /// since the last call. The first call, and the first after a change of the clock, goes on from
    /// now(); under Clock::sample it only does what was posted and left in sources. False, without
    /// waiting, while another thread is MAIN: that one then advances in this one's place when it
    /// leaves, or a window that hardly leaves MAIN would keep everybody waiting. Any thread but
    /// RENDER.
    bool tryAdvanceByWall(double seconds);

    /// Whether a WallClockDriver advances it: who holds it up then holds up all instances, so long
    /// work belongs on WORKER. Else whoever drives it waits for such work anyway. MAIN.
    bool isPaced() const;

    /// advance(now()): the main queue only.
    void runPosted() { advance(now()); }

    /// MAIN.
    void setClock(Clock clock);
    /// The driver's next call sets Clock::wall, unless somebody else sets a clock before. Any
    /// thread, RENDER included.
    void askForWallClock() ZEPHYRA_NONBLOCKING { wallAsked_ = true; }
    /// Any thread, RENDER included.
    Clock clock() const ZEPHYRA_NONBLOCKING { return clock_; }

    /// A stretch of background work, for waitForWork(); one endWork() each. Any thread but RENDER.
    void beginWork();
    void endWork();

    /// Runs posted tasks and waits for background work until there is neither. The same threads.
    void finishWork();

    /// Blocks until no background work is under way; its results are then posted. Called under the
    /// sample clock before each block, without a Scope. Any thread but RENDER in real time.
    void waitForWork();

private:
    using SharedTask =
        std::shared_ptr<const Task>; // lives on while it runs, though it cancels itself

    struct Timer {
        double first;    // due time of tick 0, seconds
        double interval; // seconds, 0 for a single task
        double tick;     // the next one: counted, so that no rounding adds up
        SharedTask task;
        double due() const { return first + tick * interval; }
    };

    bool heldHere() const;
    void enter();
    bool tryEnter();
    void leave();
    void run(double to);
    void advanceByWall(double seconds);
    bool runNextDue(double to);
    void skipMissed(double to);
    void pollSources();
    void runPostedTasks();
    Token addEntry(double first, double interval, Task task);
    void setNow(double now) {
        now_ = now;
        shown_ = before_ + now;
    }

    std::mutex mutex_; // being MAIN; guards what follows, down to sources_
    std::atomic<std::thread::id> holder_{};
    int depth_ = 0; // Scopes and advances of the holder
    bool advancing_ = false;
    Relaxed<Clock> clock_{Clock::wall};
    Relaxed<bool> wallAsked_{false};
    double before_ = 0.0; // seconds of the stretches before this one
    double now_ = 0.0;    // of this one, like all times below
    Relaxed<double> shown_{0.0};
    static constexpr double kNothingMissed = -1.0;
    std::atomic<double> missed_{kNothingMissed}; // seconds of a driver that found MAIN taken
    double wallOffset_ = -std::numeric_limits<double>::infinity(); // now() minus the driver's time
    Token nextToken_ = 1;
    std::map<Token, Timer> timers_;
    std::set<std::pair<double, Token>> order_; // due time, token
    std::map<Token, SharedTask> sources_;
    std::deque<Task> outside_;

    std::mutex queueMutex_; // guards what other threads hand over; a leaf
    std::deque<Task> posted_;
    int work_ = 0;
    std::condition_variable workEnded_;
};

} // namespace zephyra

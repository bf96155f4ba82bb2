#include "platform/threads/run_loop.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace zephyra {

namespace {

// What one thread runs outside after a stay as MAIN. A stay inside one of these tasks adds to it
// instead of running its own at once, which keeps the order.
struct OutsideRun {
    const RunLoop* loop;
    std::deque<RunLoop::Task> tasks;
    OutsideRun* outer; // of another run loop, whose task we are in
};
thread_local OutsideRun* innermostRun = nullptr;

void runOutside(const RunLoop* loop, std::deque<RunLoop::Task> tasks) {
    for (OutsideRun* run = innermostRun; run; run = run->outer)
        if (run->loop == loop) {
            std::move(tasks.begin(), tasks.end(), std::back_inserter(run->tasks));
            return;
        }
    OutsideRun run{loop, std::move(tasks), innermostRun};
    innermostRun = &run;
    while (!run.tasks.empty()) {
        const RunLoop::Task task = std::move(run.tasks.front());
        run.tasks.pop_front();
        task();
    }
    innermostRun = run.outer;
}

} // namespace

RunLoop::~RunLoop() {
    // What tasks captured may still cancel or post when it goes: it finds whole, empty containers.
    const auto posted = std::exchange(posted_, {});
    const auto outside = std::exchange(outside_, {});
    const auto timers = std::exchange(timers_, {});
    const auto sources = std::exchange(sources_, {});
}

RunLoop::Scope::Scope(RunLoop& loop) : loop_(loop) {
    loop_.enter();
}

RunLoop::Scope::~Scope() {
    loop_.leave();
}

// Only this thread ever stores its own id, so relaxed order tells it the truth about itself.
bool RunLoop::heldHere() const {
    return holder_.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void RunLoop::enter() {
    if (!heldHere()) {
        mutex_.lock();
        holder_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ++depth_;
}

bool RunLoop::tryEnter() {
    if (!heldHere()) {
        if (!mutex_.try_lock()) return false;
        holder_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ++depth_;
    return true;
}

void RunLoop::leave() {
    if (depth_ == 1)
        if (const double missed = missed_.exchange(kNothingMissed); missed != kNothingMissed)
            advanceByWall(missed);
    if (--depth_ > 0) return;
    auto outside = std::exchange(outside_, {});
    holder_.store(std::thread::id(), std::memory_order_relaxed);
    mutex_.unlock();
    if (!outside.empty()) runOutside(this, std::move(outside));
}

void RunLoop::post(Task task) {
    if (!task) return;
    const std::lock_guard lock(queueMutex_);
    posted_.push_back(std::move(task));
}

RunLoop::Token RunLoop::performAfter(double seconds, Task task) {
    const double delay = std::isfinite(seconds) ? std::max(seconds, 0.0) : 0.0;
    return addEntry(now_ + delay, 0.0, std::move(task));
}

RunLoop::Token RunLoop::addTimer(double interval, Task task) {
    if (!std::isfinite(interval) || interval <= 0.0) return 0;
    const double used = std::max(interval, kLeastInterval);
    return addEntry(now_ + used, used, std::move(task));
}

RunLoop::Token RunLoop::addEntry(double first, double interval, Task task) {
    if (!task) return 0;
    const Token token = nextToken_++;
    timers_.emplace(token,
                    Timer{first, interval, 0.0, std::make_shared<const Task>(std::move(task))});
    order_.emplace(first, token);
    return token;
}

RunLoop::Token RunLoop::addSource(Task poll) {
    if (!poll) return 0;
    const Token token = nextToken_++;
    sources_.emplace(token, std::make_shared<const Task>(std::move(poll)));
    return token;
}

void RunLoop::cancel(Token token) {
    // The nodes are freed last: what their tasks captured may cancel others.
    const auto timer = timers_.extract(token);
    if (timer) order_.erase({timer.mapped().due(), token});
    const auto source = sources_.extract(token);
}

void RunLoop::callOutside(Task task) {
    if (!task) return;
    if (heldHere())
        outside_.push_back(std::move(task));
    else
        task();
}

void RunLoop::advance(double to) {
    const Scope scope(*this);
    run(to - before_);
}

void RunLoop::beginStretch() {
    const double passed = now_;
    order_.clear();
    for (auto& [token, timer] : timers_) {
        timer.first -= passed;
        order_.emplace(timer.due(), token);
    }
    before_ += passed;
    now_ = 0.0; // and shown_ stays
    wallOffset_ = -std::numeric_limits<double>::infinity();
}

void RunLoop::advanceStretch(double to) {
    const Scope scope(*this);
    run(to);
}

bool RunLoop::tryAdvanceByWall(double seconds) {
    if (!tryEnter()) {
        missed_ = seconds;
        return false;
    }
    advanceByWall(seconds);
    leave();
    return true;
}

void RunLoop::advanceByWall(double seconds) {
    if (wallAsked_) setClock(Clock::wall);
    if (!std::isfinite(seconds)) return;
    // Without a time to go on by, what was asked for is done all the same: perhaps no block comes.
    if (clock_ != Clock::wall) return run(now_);
    // Never behind now(): who was taken ahead, or is driven anew, goes on from where it stands.
    wallOffset_ = std::max(wallOffset_, now_ - seconds);
    run(seconds + wallOffset_);
}

bool RunLoop::isPaced() const {
    return clock_ == Clock::wall && std::isfinite(wallOffset_);
}

void RunLoop::setClock(Clock clock) {
    clock_ = clock;
    wallAsked_ = false;
    missed_ = kNothingMissed; // it would count from long ago
    wallOffset_ = -std::numeric_limits<double>::infinity();
}

void RunLoop::run(double to) {
    if (advancing_) return;
    advancing_ = true;
    if (!std::isfinite(to)) to = now_;
    to = std::max(to, now_);
    do {
        pollSources();
        runPostedTasks();
    } while (runNextDue(to));
    setNow(to);
    advancing_ = false;
}

bool RunLoop::runNextDue(double to) {
    if (clock_ == Clock::wall) skipMissed(to);
    if (order_.empty() || order_.begin()->first > to) return false;
    const auto [due, token] = *order_.begin();
    order_.erase(order_.begin());
    const auto found = timers_.find(token);
    Timer& timer = found->second;
    const SharedTask task = timer.task;
    if (timer.interval > 0.0) {
        timer.tick += 1.0;
        order_.emplace(timer.due(), token);
    } else {
        timers_.erase(found);
    }
    setNow(due);
    (*task)();
    return true;
}

void RunLoop::skipMissed(double to) {
    const double oldest = to - kMostLateness;
    for (auto next = order_.begin(); next != order_.end() && next->first < oldest;) {
        const Token token = next->second;
        Timer& timer = timers_.find(token)->second;
        if (timer.interval > 0.0) {
            next = order_.erase(next);
            timer.tick =
                std::max(timer.tick + 1.0, std::ceil((oldest - timer.first) / timer.interval));
            order_.emplace(timer.due(), token);
        } else {
            ++next;
        }
    }
}

void RunLoop::pollSources() {
    for (auto next = sources_.begin(); next != sources_.end();) {
        const Token token = next->first;
        const SharedTask poll = next->second;
        (*poll)();
        next = sources_.upper_bound(token); // it may have added or ended any of them
    }
}

void RunLoop::runPostedTasks() {
    for (;;) {
        Task task; // freed without queueMutex_, since what it captured may post
        {
            const std::lock_guard lock(queueMutex_);
            if (posted_.empty()) return;
            task.swap(posted_.front());
            posted_.pop_front();
        }
        task();
    }
}

void RunLoop::beginWork() {
    const std::lock_guard lock(queueMutex_);
    ++work_;
}

void RunLoop::endWork() {
    const std::lock_guard lock(queueMutex_);
    if (work_ > 0 && --work_ == 0) workEnded_.notify_all();
}

void RunLoop::finishWork() {
    for (;;) {
        runPosted();
        std::unique_lock lock(queueMutex_);
        workEnded_.wait(lock, [this] { return work_ == 0; });
        if (posted_.empty()) return;
    }
}

void RunLoop::waitForWork() {
    std::unique_lock lock(queueMutex_);
    workEnded_.wait(lock, [this] { return work_ == 0; });
}

} // namespace zephyra

#include "platform/threads/wall_clock_driver.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace zephyra {

namespace {
using SteadyClock = std::chrono::steady_clock;
}

struct WallClockDriver::Entry {
    explicit Entry(RunLoop& driven) : loop(driven) {}

    RunLoop& loop;
    const SteadyClock::time_point began = SteadyClock::now();
    bool inside = false; // the thread is in the run loop
    bool gone = false;   // the run loop may not exist any more
};

struct WallClockDriver::Thread {
    explicit Thread(Log& log);
    ~Thread();

    /// The one that lives, or a new one.
    static std::shared_ptr<Thread> shared(Log& log);

    void add(const std::shared_ptr<Entry>& entry);
    /// Waits until the thread is out of the entry's run loop.
    void remove(const std::shared_ptr<Entry>& entry);

private:
    void run();
    void advanceAll(std::unique_lock<std::mutex>& lock);

    std::mutex mutex_; // guards the entries; not held inside a run loop
    std::condition_variable wake_, left_;
    std::vector<std::shared_ptr<Entry>> entries_;
    std::vector<std::shared_ptr<Entry>> round_; // the thread's copy while it visits them
    bool ending_ = false;
    std::thread thread_;
};

WallClockDriver::Thread::Thread(Log& log) {
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
        log.write(std::string("Nothing moves by itself, no thread could be started for timers: ") +
                  error.what());
    }
}

WallClockDriver::Thread::~Thread() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
}

std::shared_ptr<WallClockDriver::Thread> WallClockDriver::Thread::shared(Log& log) {
    static std::mutex mutex;
    static std::weak_ptr<Thread> latest;
    const std::lock_guard lock(mutex);
    std::shared_ptr<Thread> thread = latest.lock();
    if (!thread) latest = thread = std::make_shared<Thread>(log);
    return thread;
}

void WallClockDriver::Thread::add(const std::shared_ptr<Entry>& entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(entry);
}

void WallClockDriver::Thread::remove(const std::shared_ptr<Entry>& entry) {
    std::unique_lock lock(mutex_);
    std::erase(entries_, entry);
    entry->gone = true;
    left_.wait(lock, [&] { return !entry->inside; });
}

void WallClockDriver::Thread::run() {
    const auto period =
        std::chrono::duration_cast<SteadyClock::duration>(std::chrono::duration<double>(kPeriod));
    auto next = SteadyClock::now();
    std::unique_lock lock(mutex_);
    while (!wake_.wait_until(lock, next, [this] { return ending_; })) {
        advanceAll(lock);
        next = std::max(next + period, SteadyClock::now()); // a late one is not made up for
    }
}

void WallClockDriver::Thread::advanceAll(std::unique_lock<std::mutex>& lock) {
    round_ = entries_;
    for (const std::shared_ptr<Entry>& entry : round_) {
        if (entry->gone) continue;
        entry->inside = true;
        lock.unlock();
        const std::chrono::duration<double> elapsed = SteadyClock::now() - entry->began;
        entry->loop.tryAdvanceByWall(elapsed.count());
        lock.lock();
        entry->inside = false;
        left_.notify_all();
    }
}

WallClockDriver::WallClockDriver(RunLoop& loop, Log& log)
    : thread_(Thread::shared(log)), entry_(std::make_shared<Entry>(loop)) {
    thread_->add(entry_);
}

WallClockDriver::~WallClockDriver() {
    thread_->remove(entry_);
}

} // namespace zephyra

// Worker: one background thread for long work, of which only the latest request counts.
#pragma once

#include "platform/text/log.h"
#include "platform/threads/run_loop.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace zephyra {

/// A job runs on WORKER and answers with what is to be done on MAIN. Starting another one tells the
/// running one to stop and drops its answer. The thread starts with the first job.
class Worker {
public:
    /// Should be looked at now and then by long jobs: true once nobody wants the answer any more.
    using Cancelled = std::atomic<bool>;
    /// What runs on WORKER; the answer runs on MAIN, an empty one does nothing. Must not throw.
    using Job = std::function<RunLoop::Task(const Cancelled& cancelled)>;

    /// Both must outlive this.
    Worker(RunLoop& loop, Log& log);
    /// Drops what waits, tells the running job to stop and waits for it, so jobs may not wait for
    /// MAIN. MAIN, also inside the answer.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// The latest request wins: whatever ran or waited before will not answer. An empty job only
    /// cancels. MAIN.
    void start(Job job);

    /// The running and the waiting job will not answer. MAIN.
    void cancel();

    /// Whether an answer is still to come. MAIN.
    bool busy() const { return latest_ != nullptr; }

private:
    struct Request {
        Job job;
        Cancelled cancelled{false};
    };

    void run();
    void perform(const std::shared_ptr<Request>& request);
    bool hasThread();

    RunLoop& loop_;
    Log& log_;
    std::shared_ptr<Request> latest_; // MAIN's; null once it has answered or was cancelled
    std::mutex mutex_;                // guards waiting_ and ending_
    std::condition_variable wake_;
    std::shared_ptr<Request> waiting_;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace zephyra

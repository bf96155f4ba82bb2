#include "platform/threads/worker.h"

#include "platform/threads/thread_priority.h"

#include <string>
#include <system_error>
#include <utility>

namespace zephyra {

Worker::Worker(RunLoop& loop, Log& log) : loop_(loop), log_(log) {}

Worker::~Worker() {
    cancel();
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void Worker::start(Job job) {
    cancel();
    if (!job) return;
    latest_ = std::make_shared<Request>();
    latest_->job = std::move(job);
    loop_.beginWork();
    if (!hasThread()) {
        perform(latest_);
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        waiting_ = latest_;
    }
    wake_.notify_one();
}

void Worker::cancel() {
    if (!latest_) return;
    latest_->cancelled = true;
    latest_.reset();
    std::shared_ptr<Request> dropped;
    {
        const std::lock_guard lock(mutex_);
        dropped.swap(waiting_);
    }
    if (!dropped) return; // it runs, or ran
    dropped.reset();
    loop_.endWork();
}

bool Worker::hasThread() {
    if (thread_.joinable()) return true;
    try {
        thread_ = std::thread([this] { run(); });
        return true;
    } catch (const std::system_error& error) {
        log_.write(std::string("Warning, waiting for work that no thread could be started for: ") +
                   error.what());
        return false;
    }
}

void Worker::run() {
    if (loop_.clock() == RunLoop::Clock::wall) yieldToOthers(); // else MAIN waits for the answer
    for (;;) {
        std::shared_ptr<Request> request;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return waiting_ || ending_; });
            if (!waiting_) return;
            request.swap(waiting_);
        }
        perform(request);
    }
}

void Worker::perform(const std::shared_ptr<Request>& request) {
    RunLoop::Task answer = request->job(request->cancelled);
    if (request->cancelled) answer = nullptr; // a sound in it may take long to be freed
    request->job = nullptr; // frees what it captured before anybody hears that it ended
    loop_.post([this, request, answer = std::move(answer)] {
        if (request->cancelled) return; // we may be gone
        latest_.reset();
        if (answer) answer();
    });
    loop_.endWork();
}

} // namespace zephyra

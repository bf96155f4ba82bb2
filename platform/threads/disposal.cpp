#include "platform/threads/disposal.h"

#include "platform/threads/thread_priority.h"

#include <system_error>
#include <utility>

namespace zephyra {

Disposal::~Disposal() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void Disposal::take(std::shared_ptr<const void> object) {
    if (!object || !hasThread()) return;
    {
        const std::lock_guard lock(mutex_);
        objects_.push_back(std::move(object));
    }
    wake_.notify_one();
}

bool Disposal::hasThread() {
    if (thread_.joinable()) return true;
    try {
        thread_ = std::thread([this] { run(); });
        return true;
    } catch (const std::system_error&) {
        return false; // it is slower, and nothing else
    }
}

void Disposal::run() {
    yieldToOthers();
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return !objects_.empty() || ending_; });
        if (objects_.empty()) return;
        auto freed = std::exchange(objects_, {});
        lock.unlock();
        freed.clear();
        lock.lock();
    }
}

} // namespace zephyra

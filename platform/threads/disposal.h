// Disposal: a background thread that frees large objects.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zephyra {

/// Giving an hour of sound back to the system takes tens of milliseconds, in which MAIN would hear
/// nothing of the host. The thread starts with the first object.
class Disposal {
public:
    Disposal() = default;
    /// Once everything is freed. MAIN.
    ~Disposal();
    Disposal(const Disposal&) = delete;
    Disposal& operator=(const Disposal&) = delete;

    /// Lets go of object on the thread; at once when none can be started. MAIN.
    void take(std::shared_ptr<const void> object);

private:
    void run();
    bool hasThread();

    std::mutex mutex_; // guards objects_ and ending_
    std::condition_variable wake_;
    std::vector<std::shared_ptr<const void>> objects_;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace zephyra

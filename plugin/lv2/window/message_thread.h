// MessageThread: JUCE's message thread, one for every window of this library.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace zephyra {

/// A thread of our own, since a host's idle calls come half as often as a display shows frames. It
/// runs while somebody holds it. A process that exits meanwhile stops it where it is, and destroys
/// nothing: what it would use may be gone by then. HOST.
class MessageThread {
public:
    /// The one that runs, else a new one. Null where there is no display.
    static std::shared_ptr<MessageThread> shared();
    ~MessageThread();
    MessageThread(const MessageThread&) = delete;
    MessageThread& operator=(const MessageThread&) = delete;

    /// Runs task on it and waits for its end; throws what task throws. Not on the thread itself.
    void call(const std::function<void()>& task);

private:
    MessageThread();
    void run();
    static void leaveAtExit();

    std::atomic<bool> quits_ = false;
    bool hasDisplay_ = false;
    std::thread thread_;
};

} // namespace zephyra

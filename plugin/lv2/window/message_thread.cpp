#include "plugin/lv2/window/message_thread.h"

#include "screens/desktop/x11_display.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <future>
#include <mutex>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
} // namespace juce

namespace zephyra {

namespace {

std::mutex mutex;
std::weak_ptr<MessageThread>& running() {
    static auto* const thread = new std::weak_ptr<MessageThread>; // outlives every exit
    return *thread;
}

// Whether the thread is to stand still from now on, and whether it does.
std::atomic<bool> exiting = false, standsStill = false;

} // namespace

std::shared_ptr<MessageThread> MessageThread::shared() {
    const std::lock_guard lock(mutex);
    if (auto thread = running().lock()) return thread;
    static const int registered = std::atexit(leaveAtExit);
    if (registered != 0) return nullptr;
    const std::shared_ptr<MessageThread> thread(new MessageThread);
    if (!thread->hasDisplay_) return nullptr;
    running() = thread;
    return thread;
}

MessageThread::MessageThread() {
    std::promise<bool> started;
    thread_ = std::thread([this, &started] {
        juce::initialiseJuce_GUI();
        juce::MessageManager::getInstance()->setCurrentThreadAsMessageThread();
        const bool hasDisplay = juce::Desktop::getInstance().getDisplays().getPrimaryDisplay();
        started.set_value(hasDisplay);
        if (hasDisplay) x11::dropOwnErrors();
        run();
        juce::shutdownJuce_GUI();
    });
    hasDisplay_ = started.get_future().get();
}

MessageThread::~MessageThread() {
    juce::MessageManager::callAsync([this] { quits_ = true; });
    thread_.join();
}

void MessageThread::run() {
    while (!quits_) {
        juce::dispatchNextMessageOnSystemQueue(false);
        if (!exiting) continue;
        standsStill = true;
        for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

void MessageThread::leaveAtExit() {
    const std::lock_guard lock(mutex);
    const auto thread = running().lock();
    if (!thread) return;
    exiting = true;
    juce::MessageManager::callAsync([] {});
    for (int i = 0; i < 100 && !standsStill; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    new std::shared_ptr<MessageThread>(thread); // nobody joins or destroys it any more
}

void MessageThread::call(const std::function<void()>& task) {
    struct Called {
        const std::function<void()>& task;
        std::exception_ptr thrown = {};
    } called{task};
    juce::MessageManager::getInstance()->callFunctionOnMessageThread(
        [](void* data) -> void* {
            auto& it = *static_cast<Called*>(data);
            try {
                it.task();
            } catch (...) {
                it.thrown = std::current_exception(); // in JUCE's loop it would end the host
            }
            return nullptr;
        },
        &called);
    if (called.thrown) std::rethrow_exception(called.thrown);
}

} // namespace zephyra

// ScreenSource: the instance that a window shows, and the moments at which the window reads it.
#pragma once

#include "hosting/plugin_instance.h"

#include <utility>
#include <vector>

namespace zephyra {

/// When a frame of the window is drawn.
struct FrameTime {
    double now = 0.0;     ///< seconds on the window's clock, which goes steadily
    double elapsed = 0.0; ///< since the frame before; 0 of the first one
};

/// What is copied out of the instance once a frame, by one part of the window. Message thread.
class ScreenPart {
public:
    ScreenPart() = default;
    virtual ~ScreenPart() = default;
    ScreenPart(const ScreenPart&) = delete;
    ScreenPart& operator=(const ScreenPart&) = delete;

    /// Copies what is shown, quickly: the instance's timers wait meanwhile. MAIN.
    virtual void read(AudioUnitViewController& view, const FrameTime& time) = 0;
};

/// A window never waits for RENDER, and a frame never waits for MAIN: where another thread is MAIN,
/// the parts show the moment before. Hands do wait for MAIN, which is held for moments. Message
/// thread, the instance outlives it.
class ScreenSource {
public:
    explicit ScreenSource(PluginInstance& plugin) : plugin_(plugin) {}
    ScreenSource(const ScreenSource&) = delete;
    ScreenSource& operator=(const ScreenSource&) = delete;

    PluginInstance& plugin() noexcept { return plugin_; }

    /// part is read from the next frame on until it is removed; it outlives that.
    void add(ScreenPart& part) { parts_.push_back(&part); }
    void remove(ScreenPart& part) { std::erase(parts_, &part); }

    /// Reads every part, in the order of addition. False, and nothing was read, where MAIN is
    /// taken.
    bool readFrame(const FrameTime& time);

    /// What a hand does: hand(view) as MAIN, and its answer. Not inside another one's.
    template <typename Hand>
    auto asMain(Hand&& hand) {
        RunLoop::Scope scope(plugin_.system().instance.runLoop);
        return std::forward<Hand>(hand)(plugin_.system().view);
    }

private:
    PluginInstance& plugin_;
    std::vector<ScreenPart*> parts_;
};

} // namespace zephyra

// window_cost WIDTHxHEIGHT [SECONDS]: the whole window on the display in DISPLAY while a stream
// plays 24 grains in real time, and while nothing does: paints a second, and what the thread of the
// window takes of a core.
#include "bench/thread_time.h"
#include "screens/zephyra_screen.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

namespace zephyra {
namespace {

constexpr double kRate = 48000.0;
constexpr std::uint32_t kBlock = 480;
constexpr double kSettles = 2.0; // seconds

/// Blocks in real time, as a host's thread asks for them.
class Playing {
public:
    explicit Playing(PluginInstance& plugin) : thread_([this, &plugin] { play(plugin); }) {}
    ~Playing() {
        ends_ = true;
        thread_.join();
    }

private:
    void play(PluginInstance& plugin) {
        std::vector<float> left(kBlock), right(kBlock);
        PluginBlock block;
        block.frames = kBlock;
        block.output[0] = left.data();
        block.output[1] = right.data();
        auto due = std::chrono::steady_clock::now();
        while (!ends_) {
            plugin.render(block);
            std::this_thread::sleep_until(due += std::chrono::milliseconds(10));
        }
    }

    std::atomic<bool> ends_ = false;
    std::thread thread_;
};

struct Later final : juce::Timer {
    Later(double seconds, std::function<void()> action) : action_(std::move(action)) {
        startTimer(static_cast<int>(seconds * 1000.0));
    }
    void timerCallback() override {
        stopTimer();
        action_();
    }
    std::function<void()> action_;
};

/// From a moment on, for so many seconds; then tells, and calls next.
class Measure {
public:
    Measure(const char* what, ZephyraScreen& screen, double from, double seconds,
            std::function<void()> next)
        : begins_(from,
                  [this, &screen] {
                      begin_ = threadNanoseconds();
                      paints_ = screen.paints();
                  }),
          ends_(from + seconds, [this, what, &screen, seconds, next] {
              std::printf("%s: %.1f paints a second, %.1f %% of a core\n", what,
                          static_cast<double>(screen.paints() - paints_) / seconds,
                          (threadNanoseconds() - begin_) / seconds * 1e-7);
              next();
          }) {}

private:
    double begin_ = 0.0;
    std::uint64_t paints_ = 0;
    Later begins_, ends_;
};

void setGrains(PluginInstance& plugin) {
    const RunLoop::Scope main(plugin.system().instance.runLoop);
    MOK_SCRUB_GRANULATOR& stream = plugin.system().stream();
    for (const auto& [id, displayed] : {std::pair{ControlId::density, 40.0f},
                                        {ControlId::length, 620.0f},
                                        {ControlId::rndPitch, 22.0f},
                                        {ControlId::jittering, 1000.0f},
                                        {ControlId::width, 0.9f}})
        stream.setDisplayed(id, displayed);
}

int run(int width, int height, double seconds) {
    PluginInstance plugin(PluginKind::instrument);
    plugin.prepare({.sampleRate = kRate, .mostFrames = kBlock});
    setGrains(plugin);
    const Playing playing(plugin);
    juce::DocumentWindow window("Zephyra", juce::Colours::black, 0);
    window.setUsingNativeTitleBar(true);
    auto* const screen = new ZephyraScreen(plugin);
    screen->setSize(width, height);
    window.setContentOwned(screen, true);
    window.setTopLeftPosition(0, 0);
    window.setVisible(true);
    const Measure stopped("stopped", *screen, kSettles, seconds, [&plugin] {
        plugin.setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
    });
    const Measure played("playing", *screen, 2.0 * kSettles + seconds, seconds,
                         [] { juce::MessageManager::getInstance()->stopDispatchLoop(); });
    juce::MessageManager::getInstance()->runDispatchLoop();
    return 0;
}

} // namespace
} // namespace zephyra

int main(int count, char** arguments) {
    int width = 1100, height = 700;
    if (count > 1) std::sscanf(arguments[1], "%dx%d", &width, &height);
    const juce::ScopedJuceInitialiser_GUI gui;
    if (!std::getenv("DISPLAY")) return std::fputs("no DISPLAY\n", stderr), 2;
    return zephyra::run(width, height, count > 2 ? std::strtod(arguments[2], nullptr) : 5.0);
}

// window_cost WIDTHxHEIGHT [SECONDS]: the whole window on the display in DISPLAY while a stream
// plays 24 grains in real time, and while nothing does: paints a second, and what the thread of the
// window takes of a core, each with what it must be.
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

/// Percent of a core; limits are those of the largest window that is no larger.
struct Goal {
    int width, height;
    double must, should;
};
constexpr Goal kPlaying[] = {{3840, 2160, 15.0, 8.0}, {0, 0, 5.0, 4.0}};
constexpr double kLeastPaints = 58.0, kStopped = 1.0;

Goal playingGoal(int width, int height) {
    for (const Goal& goal : kPlaying)
        if (width >= goal.width && height >= goal.height) return goal;
    return kPlaying[1];
}

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

struct Found {
    double paints, percent; ///< a second; of a core
};

/// From a moment on, for so many seconds; then tells.
class Measure {
public:
    Measure(ZephyraScreen& screen, double from, double seconds, std::function<void(Found)> tell)
        : begins_(from,
                  [this, &screen] {
                      begin_ = threadNanoseconds();
                      paints_ = screen.paints();
                  }),
          ends_(from + seconds, [this, &screen, seconds, tell] {
              tell({static_cast<double>(screen.paints() - paints_) / seconds,
                    (threadNanoseconds() - begin_) / seconds * 1e-7});
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
    bool isMet = true;
    const Measure stopped(*screen, kSettles, seconds, [&](Found found) {
        std::printf("stopped: %.1f paints a second (must be 0), %.1f %% of a core (must be under "
                    "%.0f)\n",
                    found.paints, found.percent, kStopped);
        isMet = found.paints == 0.0 && found.percent < kStopped;
        plugin.setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
    });
    const Goal goal = playingGoal(width, height);
    const Measure played(*screen, 2.0 * kSettles + seconds, seconds, [&](Found found) {
        std::printf("playing: %.1f paints a second (must be %.0f), %.1f %% of a core (must be "
                    "under %.0f, should be %.0f)\n",
                    found.paints, kLeastPaints, found.percent, goal.must, goal.should);
        isMet = isMet && found.paints >= kLeastPaints && found.percent < goal.must;
        juce::MessageManager::getInstance()->stopDispatchLoop();
    });
    juce::MessageManager::getInstance()->runDispatchLoop();
    return isMet ? 0 : 1;
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

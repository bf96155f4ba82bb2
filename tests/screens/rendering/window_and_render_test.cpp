// A window beside RENDER: the sound is the same with it, and neither waits for the other.
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
#include "tests/support/plugin_player.h"
#include "tests/support/render_guard.h"

#include <csignal>
#include <pthread.h>

namespace zephyra {
namespace {

constexpr double kRate = 48000.0;
constexpr std::uint32_t kMost = 700;
constexpr std::int32_t kFrames = 20 * 48000;

/// A window as its display drives it, drawn to a picture.
class Drawn {
public:
    explicit Drawn(PluginInstance& plugin) : screen_(plugin) {}
    void draw() {
        screen_.frame(now_ += 1.0 / 60.0);
        screen_.paintEntireComponent(graphics_, true);
    }

private:
    ZephyraScreen screen_;
    juce::Image picture_{juce::Image::RGB, screen_.getWidth(), screen_.getHeight(), true,
                         juce::SoftwareImageType()};
    juce::Graphics graphics_{picture_};
    double now_ = 0.0;
};

struct Row {
    const char* name;
    PluginKind kind;
    bool live;
    friend void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }
};

struct Playing : PluginPlayer {
    explicit Playing(const Row& row) : PluginPlayer(row.kind) {
        EXPECT_TRUE(plugin.prepare({.sampleRate = kRate, .mostFrames = kMost}).ok());
        arrange(plugin.system(), row.live);
        plugin.setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
    }
    std::vector<float> bounce(const std::function<void(int)>& events = {}) {
        return play(kFrames, true, {}, events);
    }
};

struct WindowAndRender : testing::TestWithParam<Row> {
    const juce::ScopedJuceInitialiser_GUI juce;
};

TEST_P(WindowAndRender, SoundTheSameAsWithoutWindow) {
    const std::vector<float> alone = Playing(GetParam()).bounce();
    EXPECT_GT(std::ranges::max(alone), 0.05f);
    {
        Playing open(GetParam());
        Drawn window(open.plugin);
        EXPECT_TRUE(open.bounce([&](int block) {
            if (block % 16 == 0) window.draw();
        }) == alone)
            << "open from the first block on";
    }
    Playing passing(GetParam());
    std::vector<float> heard;
    std::atomic<bool> ended = false;
    std::atomic<int> windows = 0;
    std::thread host([&] {
        heard = passing.bounce([&](int block) { // no bounce is too quick for some windows
            for (const int wanted = block / 500; windows < wanted;) std::this_thread::yield();
        });
        ended = true;
    });
    for (; !ended; ++windows) {
        Drawn window(passing.plugin);
        for (int i = 0; i < 3; ++i) window.draw();
    }
    host.join();
    EXPECT_GT(windows, 3);
    EXPECT_TRUE(heard == alone) << "opened and closed meanwhile";
}

INSTANTIATE_TEST_SUITE_P(Kinds, WindowAndRender,
                         testing::Values(Row{"Effect", PluginKind::effect, false},
                                         Row{"EffectLive", PluginKind::effect, true},
                                         Row{"Instrument", PluginKind::instrument, false}),
                         [](const auto& row) { return row.param.name; });

/// Blocks in real time on a thread of its own, until it goes. hold() lets it stand still wherever
/// it is just now, as a busy machine does; the guard sees what it may not call.
class RealTime {
public:
    explicit RealTime(PluginInstance& plugin) : thread_([this, &plugin] { run(plugin); }) {
        std::signal(SIGUSR1, [](int) {
            isHeld = true;
            while (holds) ::usleep(100);
            isHeld = false;
        });
    }
    ~RealTime() { end(); }
    /// What the guard saw; empty for nothing.
    std::string end() {
        ends_ = true;
        if (thread_.joinable()) thread_.join();
        return seen_;
    }
    void hold() {
        holds = true;
        ::pthread_kill(thread_.native_handle(), SIGUSR1);
        while (!isHeld) std::this_thread::yield();
    }
    static void letGo() {
        holds = false;
        while (isHeld) std::this_thread::yield();
    }

private:
    void run(PluginInstance& plugin) {
        std::vector<float> left(kMost), right(kMost), input(kMost, 0.1f);
        const PluginBlock block{
            kMost, {input.data(), input.data()}, {left.data(), right.data()}, {}};
        while (!ends_) {
            {
                const RenderGuard guard;
                for (int i = 0; i < 20; ++i) plugin.render(block);
            }
            if (seen_.empty()) seen_ = RenderGuard::report();
        }
    }

    static inline std::atomic<bool> holds = false, isHeld = false;
    std::atomic<bool> ends_ = false;
    std::string seen_; // the thread's, until it has ended
    std::thread thread_;
};

TEST(WindowBesideRender, GoesOnWhereverRenderStandsStillAndTakesNoLockOfIt) {
    const juce::ScopedJuceInitialiser_GUI juce;
    Playing player({"", PluginKind::effect, true});
    RealTime render(player.plugin);
    Drawn stays(player.plugin);
    std::atomic<int> drawn = 0;
    std::atomic<bool> ended = false, waited = false;
    std::thread watch([&] { // else the test would stand still, too
        for (int last = -1; !ended; last = drawn) {
            if (drawn == last) waited = true, RealTime::letGo();
            for (int i = 0; i < 50 && !ended; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    });
    for (; drawn < 40 && !waited; ++drawn) {
        render.hold();
        stays.draw();
        if (drawn % 6 == 0) Drawn(player.plugin).draw();
        RealTime::letGo();
        stays.draw();
    }
    ended = true;
    watch.join();
    EXPECT_FALSE(waited) << "a frame waited for RENDER";
    EXPECT_EQ(render.end(), "");
}

} // namespace
} // namespace zephyra

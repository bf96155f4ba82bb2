// The blocks of a plug-in's instance: events, sizes, and the two clocks.

#include "platform/lists/property_list.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/plugin_player.h"

namespace zephyra {
namespace {

using enum ControlId;

constexpr auto kPitch = static_cast<AUParameterAddress>(pitch);

struct Blocks : PluginPlayer, testing::Test {
    Blocks() {
        EXPECT_TRUE(plugin.prepare({44100, 64}));
        const RunLoop::Scope main(loop());
        plugin.system().stream().loadSound(noiseSample(30000, 44100));
    }
    RunLoop& loop() { return plugin.system().instance.runLoop; }
    /// Both channels, which are written over.
    void block(std::uint32_t frames, bool offline = false) {
        left.assign(std::max<std::size_t>(frames, 1), NAN);
        right = left;
        const PluginBlock sent{frames, {left.data(), left.data()}, {left.data(), right.data()}, {}};
        if (offline)
            plugin.renderOffline(sent);
        else
            plugin.render(sent);
        for (std::uint32_t n = 0; n < frames; ++n)
            EXPECT_TRUE(std::isfinite(left[n]) && std::isfinite(right[n])) << n;
    }
    float pitchNow() {
        const RunLoop::Scope main(loop());
        return plugin.system().stream().linear(pitch);
    }
    bool pitchComes(float wanted) {
        return comesTrue([&] { return pitchNow() == wanted; });
    }

    std::vector<float> left, right;
};

TEST_F(Blocks, OfAnySizeHandOverEachEventInItsTurn) {
    for (const bool offline : {false, true}) {
        SCOPED_TRACE(offline);
        float value = offline ? -12.0f : 0.0f;
        for (const std::uint32_t frames : {0u, 1u, 64u, 65u, 4096u, 9000u}) {
            plugin.queueParameter(kPitch, -24.0f, 0);
            plugin.queueParameter(kPitch, value += 1.0f, frames > 0 ? frames - 1 : 0);
            plugin.queueParameter(kPitch, 7.0f, frames + 60); // of a later block
            block(frames, offline);
            if (offline) block(0, true); // the last frames' events act where the next block begins
            EXPECT_TRUE(pitchComes(value)) << frames;
            EXPECT_EQ(plugin.parameter(kPitch), value) << frames;
            block(64, offline);
            block(64, !offline); // the clock changes: what waits is not lost
            EXPECT_TRUE(pitchComes(7.0f)) << frames;
        }
    }
}

TEST_F(Blocks, LoseNothingOfAHostGoneWild) {
    const std::uint8_t low[] = {0x90, 48, 100}, high[] = {0x90, 72, 100};
    for (const bool offline : {false, true}) {
        const auto never = std::numeric_limits<std::uint32_t>::max();
        plugin.queueParameter(static_cast<AUParameterAddress>(width), offline ? 0.5f : 0.75f,
                              never);
        for (int n = 0; n < 3000; ++n) plugin.queueMidi(low, 3, 10);
        for (int n = 0; n < 3000; ++n)
            plugin.queueParameter(static_cast<AUParameterAddress>(density),
                                  0.3f + 1e-4f * static_cast<float>(n), 20);
        plugin.queueMidi(high, 3, 30);
        block(64, offline);
        EXPECT_TRUE(pitchComes(12.0f));
        EXPECT_EQ(plugin.parameter(static_cast<AUParameterAddress>(density)),
                  0.3f + 1e-4f * 2999.0f);
        EXPECT_EQ(plugin.parameter(static_cast<AUParameterAddress>(width)), offline ? 0.5f : 0.75f);
        EXPECT_EQ(plugin.system().unit->lostNotices() + plugin.system().inlet.replaced(), 0u);
        plugin.setParameter(kPitch, 0.0f);
    }
}

TEST_F(Blocks, AreSilentWhereNothingIsPrepared) {
    plugin.release();
    for (const bool offline : {false, true}) {
        plugin.queueParameter(kPitch, offline ? 3.0f : 4.0f, 5000);
        block(512, offline);
        EXPECT_EQ(left, std::vector<float>(512, 0.0f));
        EXPECT_EQ(right, left);
        EXPECT_TRUE(pitchComes(offline ? 3.0f : 4.0f));
    }
    EXPECT_FALSE(plugin.prepare({7999, 512}));
    EXPECT_TRUE(plugin.prepare({192000, 512}));
    block(512);
}

TEST_F(Blocks, LetTheClockChangeWithoutATickLostOrDoubled) {
    std::vector<double> ticks;
    {
        const RunLoop::Scope main(loop());
        loop().addTimer(0.01, [&] { ticks.push_back(loop().now()); });
    }
    const auto since = std::chrono::steady_clock::now();
    double offline = 0.0;
    for (int round = 0; round < 40; ++round) {
        for (int n = 0; n < 5; ++n) block(441, true), offline += 0.01;
        block(64);
        if (round % 2 == 0) continue; // back at once
        std::this_thread::sleep_for(std::chrono::milliseconds(15));
        block(64);
    }
    block(64, true);
    const RunLoop::Scope main(loop());
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
    for (std::size_t n = 1; n < ticks.size(); ++n) EXPECT_NEAR(ticks[n] - ticks[n - 1], 0.01, 1e-9);
    const double passed = 0.01 * static_cast<double>(ticks.size());
    EXPECT_GT(passed, offline + 0.1);
    EXPECT_LT(passed, offline + wall + 0.02);
}

TEST_F(Blocks, LeaveNothingUndoneAfterAnOfflineStretch) {
    // No block comes any more: what is asked for is done all the same, and time stands still.
    block(512, true);
    const double now = loop().now();
    plugin.loadSample(ZEPHYRA_SOURCE_DIR "/resources/Blackbird.mp3");
    EXPECT_TRUE(comesTrue([&] {
        const RunLoop::Scope main(loop());
        return plugin.system().stream().fileInformation().starts_with("Blackbird");
    }));
    plugin.setParameter(kPitch, 5.0f);
    EXPECT_TRUE(pitchComes(5.0f));
    const std::string state = plugin.state();
    plugin.setParameter(kPitch, 6.0f);
    EXPECT_TRUE(pitchComes(6.0f));
    EXPECT_TRUE(plugin.setState(std::as_bytes(std::span(state))));
    EXPECT_EQ(pitchNow(), 5.0f);
    EXPECT_EQ(loop().now(), now);
    plugin.release();
    EXPECT_TRUE(comesTrue([&] { return loop().now() > now; }));
}

TEST(PluginSeeds, DifferUnlessTheyAreFixedOrRestored) {
    std::set<std::uint32_t> seeds;
    std::string state;
    std::uint32_t first = 0;
    for (int n = 0; n < 3; ++n) {
        PluginInstance fresh(PluginKind::instrument,
                             [](Instance& instance) { instance.clock.fix(5); });
        const auto seed = [&] { return fresh.system().stream().seed(); };
        seeds.insert(seed());
        EXPECT_EQ(seed() % 2, 1u);
        if (n == 0) first = seed(), state = fresh.state();
        EXPECT_TRUE(fresh.setState(std::as_bytes(std::span(state))));
        EXPECT_EQ(seed(), first);
    }
    EXPECT_EQ(seeds.size(), 3u);
    PluginPlayer one, other;
    EXPECT_EQ(one.plugin.system().stream().seed(), other.plugin.system().stream().seed());
}

TEST(PluginBlocks, FollowALoopOrAJumpOfTheHostWithScanSync) {
    // Blocks of a 50th of a quarter that a host rolls from quarter 4 on, where it goes then,
    // whether the user has armed Rewind by then, and whether the scan goes back to its start.
    const struct {
        int blocks;
        double to;
        bool armed, goesBack;
    } rows[] = {{20, 4.0, true, true},   {20, 4.0, false, false}, // the same downbeat again
                {110, 4.0, true, true},  {110, 8.0, true, true},  {110, 5.0, true, false},
                {20, 6.5, true, false},  {20, 0.0, false, true},  {20, 0.1, false, true},
                {20, 0.3, false, false}, {20, 4.4, true, false}}; // and no jump
    for (const auto& row : rows) {
        HostedPlugin plugin(PluginKind::instrument);
        plugin.sync(true);
        plugin.transport = {.tempo = 120.0, .numerator = 4.0, .beats = 4.0, .moving = true};
        plugin.render(row.blocks);
        const auto scan = [&] { return plugin.system().stream().getTimePhasor(); };
        const float before = scan();
        EXPECT_GT(before, 0.05f);
        if (row.armed) {
            const auto main = plugin.main();
            plugin.system().stream().ui_armRewind();
        }
        plugin.transport = {.beats = row.to, .moving = true};
        plugin.render(2);
        EXPECT_EQ(scan() < before, row.goesBack)
            << row.blocks << " to " << row.to << ", armed: " << row.armed;
    }
}

TEST_F(Blocks, AreShownToMetersAsTheyLeaveAndMeasured) {
    OutputMonitor& monitor = plugin.monitor();
    std::vector<float> shown(64);
    const auto shows = [&](const std::vector<float>& channel, std::size_t side) {
        monitor.oscilloscope.newest(side, shown);
        return std::equal(shown.begin(), shown.end(), channel.begin());
    };
    for (int i = 0; i < 20; ++i) block(64);
    EXPECT_EQ(monitor.oscilloscope.added(), 0u); // nobody looks
    EXPECT_GT(plugin.cpuShare(), 0.0);
    const WatchCount::Watcher scope(monitor.oscilloscope.watchers), meter(monitor.levels.watchers);
    plugin.setBypass(true);
    OutputLevels::Place place = monitor.levels.newest();
    for (const bool offline : {false, true}) {
        for (int i = 0; i < 200; ++i) block(64, offline);
        EXPECT_TRUE(shows(left, 0) && shows(right, 1));
    }
    EXPECT_EQ(monitor.levels.read(place).frames, 400u * 64);
    EXPECT_EQ(plugin.cpuShare(), 0.0); // a bounce has no time to keep

    const PluginBlock mono{64, {nullptr, nullptr}, {left.data(), nullptr}, {}};
    plugin.setBypass(false);
    plugin.render(mono);
    EXPECT_TRUE(shows(left, 0) && shows(left, 1));
    EXPECT_EQ(plugin.droppedGrains(), plugin.system().stream().engine().droppedGrains());
}

TEST(RenderLoad, IsTheShareOfTheSoundsTimeWhateverTheBlocks) {
    for (const double block : {0.001, 0.02}) {
        RenderLoad load;
        for (double time = 0.0; time < 2.0; time += block) load.add(block / 4, block);
        load.add(1.0, 0.0); // no time at all
        EXPECT_NEAR(load.share(), 0.25, 0.01) << block;
        for (double time = 0.0; time < 0.3; time += block) load.add(0.0, block);
        EXPECT_NEAR(load.share(), 0.25 / 2.718, 0.01) << block;
    }
}

} // namespace
} // namespace zephyra

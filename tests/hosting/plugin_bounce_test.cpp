// What a plug-in bounces, and again the same. tests/plugin/formats compares with the command.

#include "tests/support/plugin_player.h"

namespace zephyra {
namespace {

using enum ControlId;

constexpr std::int32_t kFrames = 60000;
constexpr PluginTransport kMusic = {.tempo = 97.0, .numerator = 3.0, .beats = 0.0, .moving = true};

void automate(PluginInstance& plugin, int block) {
    const std::uint8_t note[] = {0x90, static_cast<std::uint8_t>(60 + block % 3), 100};
    if (block % 9 == 4) plugin.queueMidi(note, 3, 1000); // behind the end of most blocks
    if (block % 5 == 0)
        plugin.queueParameter(static_cast<AUParameterAddress>(density), block % 2 ? 0.2f : 0.7f,
                              block > 0 ? 33 : 0);
}

std::string firstDifference(const std::vector<float>& got, const std::vector<float>& wanted) {
    if (got.size() != wanted.size()) return "another length";
    const auto at = std::mismatch(got.begin(), got.end(), wanted.begin());
    if (at.first == got.end()) return "";
    return std::to_string(at.first - got.begin()) + ": " + std::to_string(*at.first) + " for " +
           std::to_string(*at.second);
}

float peak(const std::vector<float>& heard) {
    float most = 0.0f;
    for (const float sample : heard) most = std::max(most, std::fabs(sample));
    return most;
}

TEST(PluginBounce, IsThatOfAFreshPluginAndRepeatsAfterRealTime) {
    for (const bool live : {false, true}) {
        SCOPED_TRACE(live);
        PluginPlayer fresh, player;
        for (PluginPlayer* const each : {&fresh, &player}) {
            ASSERT_TRUE(each->plugin.prepare({44100, 256}));
            PluginPlayer::arrange(each->plugin.system(), live);
        }
        const auto bounceOf = [](PluginPlayer& each) {
            return each.play(kFrames, true, kMusic,
                             [&](int block) { automate(each.plugin, block); });
        };
        const auto bounce = [&] { return bounceOf(player); };
        const std::vector<float> wanted = bounceOf(fresh);
        EXPECT_GT(peak(wanted), 0.05f);
        std::this_thread::sleep_for(std::chrono::milliseconds(150)); // LFO and take are under way
        EXPECT_EQ(firstDifference(bounce(), wanted), "");
        for (int round = 0; round < 3; ++round) {
            std::this_thread::sleep_for(std::chrono::milliseconds(80)); // MAIN ticks
            player.play(20000 + 977 * round, false, {.moving = false}, {},
                        static_cast<std::uint32_t>(round)); // the echo rings, LFO and take go on
            EXPECT_EQ(firstDifference(bounce(), wanted), "") << round;
        }
    }
}

TEST(PluginBounce, OfAnInstrumentBeginsWithItsNotesOrTheTransport) {
    for (const bool synced : {false, true}) {
        PluginPlayer player(PluginKind::instrument);
        ASSERT_TRUE(player.plugin.prepare({44100, 256}));
        PluginPlayer::arrange(player.plugin.system());
        if (synced) {
            const RunLoop::Scope main(player.plugin.system().instance.runLoop);
            player.plugin.system().stream().setDisplayed(scanSync, 1.0f);
        }
        const auto bounce = [&] {
            return player.play(30000, true, kMusic, [&](int block) {
                const std::uint8_t on[] = {0x90, 67, 100}, off[] = {0x80, 67, 0};
                if (block == 20) player.plugin.queueMidi(on, 3, 5);
                if (block == 40) player.plugin.queueMidi(off, 3, 5);
            });
        };
        const std::vector<float> first = bounce();
        EXPECT_TRUE(synced || first[100] == 0.0f);
        EXPECT_GT(peak(first), 0.01f);
        const std::uint8_t held[] = {0x90, 50, 100}; // which a bounce knows nothing of
        player.plugin.queueMidi(held, 3);
        player.play(5000, true, {.moving = false});
        EXPECT_EQ(firstDifference(bounce(), first), "") << synced;
        ASSERT_TRUE(player.plugin.prepare({44100, 256})); // while it plays
        EXPECT_EQ(firstDifference(bounce(), first), "") << synced;
    }
}

/// The generator's state.
std::uint32_t afterOneGrain(std::uint32_t seed) {
    for (int drawn = 0; drawn < 5; ++drawn) seed *= 16807;
    return seed;
}

TEST(PluginBounce, BeginsWhereItsSettingSays) {
    // Offline, transport starts between two stretches; in real time, the generator alone is heard.
    for (const StartAnew when : {StartAnew::inBounces, StartAnew::always, StartAnew::never}) {
        PluginPlayer player;
        ASSERT_TRUE(player.plugin.prepare({44100, 256}));
        PluginPlayer::arrange(player.plugin.system());
        player.plugin.setSettings({.startAnew = when});
        const auto bounce = [&](bool offline) {
            player.play(5000, offline, {.moving = false});
            return player.play(20000, offline, kMusic);
        };
        const std::vector<float> first = bounce(true);
        EXPECT_EQ(bounce(true) == first, when != StartAnew::never);
        HostedInstance& system = player.plugin.system();
        const mokGranulatorSF& engine = system.stream().engine();
        MOK_LFO& lfo = system.view.assignments.getLfoWidgetsMapping()
                           ->getWrapperID(&system.stream().controls._pitch)
                           ->currentLFO;
        player.play(5000, false, {.moving = false});
        {
            const RunLoop::Scope main(system.instance.runLoop);
            lfo.setPhase(0.25);
            for (int n = 0; n < 4; ++n) processLFO(&lfo);
            lfo.setHz(kLowestLfoRate);
        }
        player.play(1, false, {.moving = true});
        EXPECT_EQ(engine.currentRandomSeed() == afterOneGrain(7), when == StartAnew::always);
        system.instance.runLoop.runPosted();
        EXPECT_EQ(lfo.getPhase() < 0.27, when == StartAnew::always) << lfo.getPhase();
    }
}

TEST(PluginBounce, BeginsOnceWhereABlockOfNoFramesStartsTheTransport) {
    PluginPlayer player(PluginKind::instrument);
    ASSERT_TRUE(player.plugin.prepare({44100, 256}));
    PluginPlayer::arrange(player.plugin.system());
    player.play(5000, true, {.moving = false});
    const std::uint8_t note[] = {0x90, 67, 100};
    player.plugin.queueMidi(note, 3);
    player.plugin.renderOffline({.transport = kMusic});
    EXPECT_GT(peak(player.play(20000, true)), 0.01f);
}

TEST(PluginBounce, HoldsASyncedTakeForTheDownbeatWhereAHostSendsBars) {
    PluginTransport behindTheBar = kMusic;
    behindTheBar.beats = 1.0;
    for (const auto& [transport, waits] : {std::pair(behindTheBar, true), {{}, false}}) {
        PluginPlayer player;
        ASSERT_TRUE(player.plugin.prepare({44100, 256}));
        HostedInstance& system = player.plugin.system();
        PluginPlayer::arrange(system);
        {
            const RunLoop::Scope main(system.instance.runLoop);
            system.stream().setDisplayed(scanSync, 1.0f);
        }
        player.play(1000, true, transport);
        EXPECT_EQ(system.stream().scrubRecorder.isArmed(), waits);
        EXPECT_EQ(system.stream().scrubRecorder.movesScan(), !waits);
    }
}

} // namespace
} // namespace zephyra

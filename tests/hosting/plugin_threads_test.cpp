// Plug-ins beside each other, and one under several threads, as hosts call them.

#include "tests/support/plugin_player.h"

namespace zephyra {
namespace {

TEST(PluginThreads, LetThirtyTwoBounceTogetherWhatTheyBounceAlone) {
    static constexpr PluginTransport kMusic = {.tempo = 133.0, .beats = 0.0, .moving = true};
    const auto play = [] {
        PluginPlayer player;
        EXPECT_TRUE(player.plugin.prepare({44100, 256}));
        PluginPlayer::arrange(player.plugin.system());
        return player.play(4000, true, kMusic);
    };
    const std::vector<float> alone = play();
    std::vector<std::vector<float>> heard(32);
    std::vector<std::thread> threads;
    for (auto& one : heard) threads.emplace_back([&one, play] { one = play(); });
    for (std::thread& thread : threads) thread.join();
    for (const auto& one : heard) EXPECT_TRUE(one == alone);
}

TEST(PluginThreads, LetAHostReadAndWriteWhileAnotherThreadRendersAndPrepares) {
    PluginPlayer player;
    PluginInstance& plugin = player.plugin;
    ASSERT_TRUE(plugin.prepare({44100, 256}));
    PluginPlayer::arrange(plugin.system(), true);
    std::atomic<bool> ends = false;
    std::atomic<int> n = 0;
    std::thread host([&] {
        for (; !ends; ++n) {
            const std::string state = plugin.state();
            EXPECT_TRUE(plugin.setState(std::as_bytes(std::span(state))));
            plugin.setParameter(static_cast<AUParameterAddress>(n % 24), 0.5f);
            plugin.setSettings({.startAnew = static_cast<StartAnew>(n % 3)});
            plugin.setProgram(static_cast<std::size_t>(n % 48));
            plugin.setBypass(n % 2 == 0);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    for (int round = 0; round < 3 || n < 8; ++round) {
        EXPECT_TRUE(plugin.prepare({round % 2 ? 48000.0 : 22050.0, 256}));
        const auto transport = [&](bool moving) { return PluginTransport{.moving = moving}; };
        for (const bool offline : {false, true, false, true})
            player.play(3000, offline, transport(round % 3 > 0));
        player.play(500, round % 2 == 0, transport(false));
    }
    ends = true;
    host.join();
}

} // namespace
} // namespace zephyra

// Plug-ins beside each other, as hosts play them.

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

} // namespace
} // namespace zephyra

// Every kept input of the three fuzzers of the whole system, whose names say what happens in them.

#include "fuzz/system_attacks.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

int playAll(std::string (*play)(std::span<const std::byte>), const std::string& corpus) {
    int played = 0;
    const fs::path folder = ZEPHYRA_SOURCE_DIR "/fuzz/corpus/" + corpus;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string bytes = readText(entry.path());
        EXPECT_EQ(play(std::as_bytes(std::span(bytes))), "") << entry.path();
        ++played;
    }
    return played;
}

TEST(RenderCycleCorpus, AnswersEveryCycleAsItMustAndKeepsTheRenderPromise) {
    EXPECT_GE(playAll(playRenderCycles, "render_cycle"), 19);
}

TEST(PluginStateCorpus, IsTakenOrRefusedInOneLinePlaysAndStaysTheSame) {
    EXPECT_GE(playAll(tryPluginState, "plugin_state"), 10);
    EXPECT_GE(playAll(tryPluginState, "restore_state"), 74);
}

TEST(HandsCorpus, KeepsValuesInTheirRangesAndLetsHandsWin) {
    EXPECT_GE(playAll(playHands, "hands"), 27);
}

} // namespace
} // namespace zephyra

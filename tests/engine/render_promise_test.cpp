// The render path keeps its promise: nothing allocated, freed, locked or asked of the system, which
// the real-time sanitizer sees, and no race with whoever turns and swaps things meanwhile.

#include "engine/granular_stream.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(RenderPromise, HoldsWhileAnotherThreadTurnsAndSwapsEverything) {
    mokGranulatorSF engine(nullptr, nullptr, 24, 44100, 1);
    Retirement retired(engine.renderCycle());
    engine.granularOn = true;
    std::atomic<bool> stop = false;
    std::atomic<int> cycles = 0;
    std::thread renderer([&] {
        StereoBlock block(512);
        while (!stop) {
            engine.GranularStreamProcessing(1 + cycles % 512, block.from(0));
            ASSERT_TRUE(std::isfinite(block.left[0]));
            ++cycles;
        }
    });

    std::shared_ptr<mokSample> sample;
    std::shared_ptr<mokWindow> window;
    for (int round = 0; round < 300 || cycles < 300; ++round) {
        const float turn = static_cast<float>(round % 10) * 0.1f;
        engine.setLevel(turn);
        engine.setWidth(turn);
        engine.setPan(2 * turn - 1);
        engine.setLength(1 + 200 * turn);
        engine.setDensity(400 * turn);
        engine.setRndLength(turn);
        engine.setRndDensity(turn);
        engine.setStart(turn);
        engine.setEnd(1 - turn);
        engine.setRndPitch(24 * turn);
        engine.setScanPhase(double{turn});
        engine.echoOn = round % 2 == 0;
        engine.ringOn = round % 3 == 0;
        std::shared_ptr<mokSample> nextSample =
            noiseSample(round % 2 ? 16u : 9000u, 44100, static_cast<std::uint32_t>(round));
        engine.setSample(nextSample.get());
        retired.retire(std::exchange(sample, std::move(nextSample)));
        auto nextWindow = std::make_shared<mokWindow>(round % 2 ? 64 : 4096, round % 12);
        engine.setWindow(nextWindow.get());
        retired.retire(std::exchange(window, std::move(nextWindow)));
        engine.setPitch(24 * turn - 12);
        engine.setSpeed(4 * turn);
        engine.setJittering(1000 * turn);
        if (engine.currentScanPosition() > 1.0f) ADD_FAILURE() << "a position past the end";
    }
    stop = true;
    renderer.join();
    retired.collect();
    EXPECT_EQ(retired.waiting(), 0u);
}

TEST(RenderPromise, KeepsReplacedObjectsUntilTheirCycleHasEnded) {
    RenderCycle cycle;
    Retirement retired(cycle);
    const auto object = std::make_shared<int>(1);
    retired.retire(object);
    EXPECT_EQ(retired.waiting(), 0u); // nobody renders: freed at once
    {
        const RenderCycle::Scope rendering(cycle);
        retired.retire(object);
        retired.collect();
        EXPECT_EQ(retired.waiting(), 1u);
        EXPECT_EQ(object.use_count(), 2);
    }
    retired.collect();
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
} // namespace zephyra

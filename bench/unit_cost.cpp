// unit_cost: what the audio unit's cycle costs over its engine's own block, as a ratio in one run.
//
// An engine with 24 grains, echo and ring modulator renders by itself and inside its audio unit,
// turn by turn: in an instrument, and in an effect that is half dry. It is the same engine in both,
// because two differ by some per cent through nothing but where their memory lies. Ratios are the
// medians of the rounds', so that a busy machine disturbs them little. No events.

#include "bench/bench_work.h"
#include "bench/median.h"
#include "bench/thread_time.h"
#include "tests/support/fake_host.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace zephyra {
namespace {

constexpr int kRounds = 121;
constexpr int kFrames = 3 * 4096;

/// An audio unit whose stream works as hard as the engine alone.
struct BenchUnit final : FakeHost {
    BenchUnit(const BenchWork& work, FourCharCode type) : FakeHost(type) {
        context = {120.0, 4.0, 1.5};
        unit->allocateRenderResourcesAndReturnError();
        unit->setDryWet(60.0f);
        engine().setSample(work.sample.get());
        engine().setWindow(&work.window);
        BenchWork::configure(engine());
        engine().echoOn = engine().ringOn = true;
        BenchWork::settle(engine());
        render(44100 * 10, 512); // until the mix stands
    }
    mokGranulatorSF& engine() { return controller.stream.engine(); }
    void render(int frames, int block) {
        AudioBufferList list = out.from(0);
        const FlushDenormals flush; // as on a host's audio thread
        for (int done = 0; done < frames; done += block)
            unit->internalRenderBlock()(static_cast<std::uint32_t>(block), list, nullptr, this);
    }
    /// The same by the engine alone.
    void renderEngine(int frames, int block) {
        const AudioBufferList list = out.from(0);
        const FlushDenormals flush;
        for (int done = 0; done < frames; done += block)
            engine().GranularStreamProcessing(block, list);
    }
};

void compare(const BenchWork& work, FourCharCode type, const char* name, int block, double must) {
    BenchUnit unit(work, type);
    std::array<std::vector<double>, 2> times; // of the engine, of the cycle
    for (int round = 0; round < kRounds; ++round)
        for (std::size_t turn = 0; turn < times.size(); ++turn) {
            const double before = threadNanoseconds();
            if (turn == 0)
                unit.renderEngine(kFrames, block);
            else
                unit.render(kFrames, block);
            times[turn].push_back(threadNanoseconds() - before);
        }
    const double over = 100.0 * (medianRatio(times[1], times[0]) - 1.0);
    const double nanoseconds = *std::min_element(times[0].begin(), times[0].end());
    std::printf(
        "%-10s cycle over its engine's %6.0f ns a block at %-4d %6.2f%%   must %5.1f   %s\n", name,
        nanoseconds * block / kFrames, block, over, must, over <= must ? "met" : "MISSED");
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const BenchWork work;
    compare(work, component_type::instrument, "instrument", 512, 5);
    compare(work, component_type::effect, "effect", 512, 8);
    compare(work, component_type::instrument, "instrument", 64, 25);
    compare(work, component_type::effect, "effect", 64, 25);
}

// unit_cost: what the audio unit's cycle costs over its engine's own block, as a ratio in one run.
//
// Three engines do the same work, 24 grains with echo and ring modulator, and take turns round by
// round: one alone, one inside an instrument, one inside an effect that is half dry. Ratios are
// the medians of the rounds', so that a busy machine disturbs them little. No events.

#include "bench/bench_work.h"
#include "tests/support/fake_host.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <vector>

namespace zephyra {
namespace {

constexpr int kRounds = 121;
constexpr int kFrames = 3 * 4096;

double threadNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

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
};

/// Median of a round's time here over its time there, minus 1, in percent.
double percentOver(const std::vector<double>& here, const std::vector<double>& there) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < here.size(); ++i) ratios.push_back(here[i] / there[i]);
    const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    return 100.0 * (*middle - 1.0);
}

void compare(const BenchWork& work, int block, double instrumentMust, double effectMust) {
    const auto alone = work.engine();
    alone->echoOn = alone->ringOn = true;
    BenchWork::settle(*alone);
    BenchWork::render(*alone, 44100 * 10, 512); // as far as the others
    BenchUnit instrument(work, component_type::instrument), effect(work, component_type::effect);
    std::array<std::vector<double>, 3> times;
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t turn = 0; turn < 3; ++turn) {
            const double before = threadNanoseconds();
            if (turn == 0) BenchWork::render(*alone, kFrames, block);
            if (turn == 1) instrument.render(kFrames, block);
            if (turn == 2) effect.render(kFrames, block);
            times[turn].push_back(threadNanoseconds() - before);
        }
    }
    const double nanoseconds = *std::min_element(times[0].begin(), times[0].end());
    std::printf("engine at %d: %.0f ns a block\n", block, nanoseconds * block / kFrames);
    const struct {
        const char* name;
        double over, must;
    } rows[] = {{"instrument", percentOver(times[1], times[0]), instrumentMust},
                {"effect", percentOver(times[2], times[0]), effectMust}};
    for (const auto& row : rows)
        std::printf("%-10s cycle over its engine's block at %-4d %6.2f%%   must %5.1f   %s\n",
                    row.name, block, row.over, row.must, row.over <= row.must ? "met" : "MISSED");
}

} // namespace
} // namespace zephyra

int main() {
    const zephyra::BenchWork work;
    zephyra::compare(work, 512, 5, 8);
    zephyra::compare(work, 64, 25, 25);
}

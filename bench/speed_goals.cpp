// speed_goals: every speed goal as a ratio measured in one run, with what it must and should be.
//
// All measurements take turns, round by round. A ratio is the median of its rounds' ratios, and a
// time its fastest round, so that a busy machine disturbs both little.

#include "bench/bench_work.h"
#include "bench/thread_time.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace zephyra {
namespace {

constexpr int kRounds = 61;
constexpr int kFrames = 3 * 4096;

struct Measurement {
    std::function<void()> work;
    double units;                    ///< of work in one call
    std::vector<double> rounds = {}; ///< nanoseconds of each call

    void takeTurn() {
        const double before = threadNanoseconds();
        work();
        rounds.push_back(threadNanoseconds() - before);
    }
    double nanosecondsPerUnit() const {
        return *std::min_element(rounds.begin(), rounds.end()) / units;
    }
    /// Cost of a unit here against one there.
    double against(const Measurement& other) const {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < rounds.size(); ++i)
            ratios.push_back(rounds[i] / units / (other.rounds[i] / other.units));
        const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
        std::nth_element(ratios.begin(), middle, ratios.end());
        return *middle;
    }
};

/// The goals that hold at one block size.
struct AtBlock {
    int block;
    std::unique_ptr<mokGranulatorSF> engine, withEffects;
    LiteralStream literal;
    double meanGrains;
    StereoBlock out{4096};
    std::array<Measurement, 3> measurements; ///< engine, engine with effects, literal loop

    AtBlock(const BenchWork& work, int frames)
        : block(frames), engine(work.engine()), withEffects(work.engine()),
          literal(work.literal(*engine)), meanGrains(work.meanGrains(block)),
          measurements{{{[this] { BenchWork::render(*engine, kFrames, block); }, kFrames},
                        {[this] { BenchWork::render(*withEffects, kFrames, block); }, kFrames},
                        {[this] { renderLiteral(); }, kFrames}}} {
        withEffects->echoOn = withEffects->ringOn = true;
        BenchWork::settle(*engine);
        BenchWork::settle(*withEffects);
    }

    void renderLiteral() {
        for (int done = 0; done < kFrames; done += block)
            literal.render(block, out.left.data(), out.right.data());
    }
};

/// The slowest block against the mean one; each block's time is the best of nine replays, so that
/// what the machine does beside is left out and what the engine does stays.
double worstBlock(const BenchWork& work, int block) {
    constexpr int kReplays = 9;
    const int blocks = 44100 / block;
    std::vector<double> best(static_cast<std::size_t>(blocks), std::numeric_limits<double>::max());
    for (int replay = 0; replay < kReplays; ++replay) {
        const auto engine = work.engine();
        BenchWork::render(*engine, 8192, block); // until the pool is full
        for (double& fastest : best) {
            const double before = threadNanoseconds();
            BenchWork::render(*engine, block, block);
            fastest = std::min(fastest, threadNanoseconds() - before);
        }
    }
    double sum = 0;
    for (double nanoseconds : best) sum += nanoseconds;
    return *std::max_element(best.begin(), best.end()) / (sum / blocks);
}

void row(const std::string& goal, double measured, const char* unit, double must, double aim,
         bool lessIsBetter) {
    const auto reaches = [&](double limit) {
        return lessIsBetter ? measured <= limit : measured >= limit;
    };
    std::printf("%-58s %8.2f%s   must %6.2f   aim %6.2f   %s\n", goal.c_str(), measured, unit, must,
                aim,
                reaches(aim)    ? "aim"
                : reaches(must) ? "must"
                                : "MISSED");
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const BenchWork work(10.0), longWork(600.0);
    AtBlock small(work, 64), large(work, 512), longSource(longWork, 512);
    BenchInnerBody body;
    const GrainMixer mixer = grainMixer(chosenCpuLevel());
    Measurement inner{[&] { body.run(mixer); }, BenchInnerBody::kFrames};
    for (int round = 0; round < kRounds; ++round) {
        for (AtBlock* each : {&small, &large})
            for (Measurement& measurement : each->measurements) measurement.takeTurn();
        longSource.measurements[0].takeTurn();
        inner.takeTurn();
    }

    std::printf("processor level %s, %d rounds, one core\n", cpuLevelName(chosenCpuLevel()),
                kRounds);
    std::printf("inner body %.3f ns per grain-sample\n", inner.nanosecondsPerUnit());
    const struct {
        AtBlock& at;
        double literalMust, literalAim, innerMust, innerAim, realTimeMust, realTimeAim;
    } rows[] = {{small, 3, 4, 2, 1.6, 400, 600}, {large, 3.5, 4.5, 1.7, 1.4, 500, 700}};
    for (const auto& r : rows) {
        const std::string suffix = " at " + std::to_string(r.at.block);
        const auto& [engine, effects, literal] = r.at.measurements;
        const double meanGrains = r.at.meanGrains;
        std::printf("mean active grains%s: %.2f; engine %.3f ns per grain-sample\n", suffix.c_str(),
                    meanGrains, engine.nanosecondsPerUnit() / meanGrains);
        row("literal loop against engine" + suffix, literal.against(engine), "x", r.literalMust,
            r.literalAim, false);
        row("engine against its inner body" + suffix, engine.against(inner) / meanGrains, "x",
            r.innerMust, r.innerAim, true);
        row("24 grains, echo and ring modulator, times real time" + suffix,
            1e9 / double{BenchWork::kRate} / effects.nanosecondsPerUnit(), "x", r.realTimeMust,
            r.realTimeAim, false);
        row("echo and ring modulator at rest against grains" + suffix,
            100 * (effects.against(engine) - 1), "%", 15, 12, true);
        row("worst block against mean block" + suffix, worstBlock(work, r.at.block), "x", 1.5, 1.3,
            true);
    }
    row("10-minute source against 10-second source at 512",
        longSource.measurements[0].against(large.measurements[0]) * large.meanGrains /
            longSource.meanGrains,
        "x", 1.4, 1.25, true);
}

// effects_bench: what a stereo frame of the echo and the ring modulator costs, at rest and gliding,
// beside the plain per-sample loop.
#include "effects/effect_bodies.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/literal_effects.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#if defined(__x86_64__)
#include <x86intrin.h>
#endif

namespace zephyra {
namespace {

std::uint64_t cycles() {
#if defined(__x86_64__)
    return __rdtsc();
#else
    return 0;
#endif
}

/// Reports processor seconds and elapsed time-stamp cycles per stereo frame.
class FrameCost {
public:
    FrameCost(benchmark::State& state, std::int64_t frames) : state_(state), frames_(frames) {}
    ~FrameCost() {
        const auto total = static_cast<double>(state_.iterations() * frames_);
        state_.counters["seconds/frame"] =
            benchmark::Counter(total, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
        state_.counters["cycles/frame"] = static_cast<double>(cycles() - start_) / total;
    }

private:
    benchmark::State& state_;
    std::int64_t frames_;
    std::uint64_t start_ = cycles();
};

/// A noise block for both channels that is put back before each run, as the stream does.
struct Signal {
    explicit Signal(std::int64_t frames) : source(static_cast<std::size_t>(frames)) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> uniform(-0.1f, 0.1f);
        for (float& sample : source) sample = uniform(random);
        left = right = source;
    }
    void refresh() {
        left = source;
        right = source;
    }
    std::vector<float> source, left, right;
};

enum Motion : std::int64_t { kAtRest, kGliding, kFilling };

void echo(benchmark::State& state, CpuLevel level) {
    const FlushDenormals flush;
    const std::int64_t frames = state.range(0);
    Signal signal(frames);
    std::vector<double> lines[2];
    for (auto& line : lines) line.assign(kEchoLineSize, 0);
    EchoBlock block{{lines[0].data(), lines[1].data()},
                    {},
                    {13230, 11025, 0.341, 0.231},
                    {13230, 11025, 0.341, 0.231},
                    {signal.left.data(), signal.right.data()},
                    {signal.left.data(), signal.right.data()},
                    static_cast<std::int32_t>(frames)};
    const EffectBodies bodies = effectBodiesFor(level);
    const FrameCost cost(state, frames);
    for (auto _ : state) {
        signal.refresh();
        if (state.range(1) == kGliding) {
            block.smoothed[0] = 14000;
            block.smoothed[1] = 11500;
        }
        if (state.range(1) == kFilling) block.written = 0;
        bodies.echo(block);
    }
}

void echoLiteral(benchmark::State& state) {
    const FlushDenormals flush;
    const std::int64_t frames = state.range(0);
    Signal signal(frames);
    LiteralEcho left, right;
    left.time = left.targetTime = 13230;
    right.time = right.targetTime = 11025;
    left.feedback = left.targetFeedback = 0.341;
    right.feedback = right.targetFeedback = 0.231;
    const FrameCost cost(state, frames);
    for (auto _ : state) {
        signal.refresh();
        for (std::size_t n = 0; n < signal.source.size(); ++n) {
            signal.left[n] = left(signal.left[n]);
            signal.right[n] = right(signal.right[n]);
        }
        benchmark::ClobberMemory();
    }
}

void ring(benchmark::State& state, CpuLevel level) {
    const FlushDenormals flush;
    const std::int64_t frames = state.range(0);
    Signal signal(frames);
    std::vector<double> table = LiteralRing::makeTable();
    table.push_back(table[0]);
    RingBlock block{table.data(),
                    0,
                    static_cast<double>(state.range(2)) / 44100,
                    0.5,
                    0.5,
                    {signal.left.data(), signal.right.data()},
                    {signal.left.data(), signal.right.data()},
                    static_cast<std::int32_t>(frames)};
    const EffectBodies bodies = effectBodiesFor(level);
    const FrameCost cost(state, frames);
    for (auto _ : state) {
        signal.refresh();
        if (state.range(1) == kGliding) block.smoothed = 0;
        bodies.ring(block);
    }
}

void ringLiteral(benchmark::State& state) {
    const FlushDenormals flush;
    const std::int64_t frames = state.range(0);
    Signal signal(frames);
    LiteralRing literal;
    literal.increment = static_cast<double>(state.range(1)) / 44100;
    literal.amount = literal.targetAmount = 0.5;
    const FrameCost cost(state, frames);
    for (auto _ : state) {
        signal.refresh();
        for (std::size_t n = 0; n < signal.source.size(); ++n) {
            float frame[2] = {signal.left[n], signal.right[n]};
            literal(frame, frame);
            signal.left[n] = frame[0];
            signal.right[n] = frame[1];
        }
        benchmark::ClobberMemory();
    }
}

void registerAll() {
    benchmark::RegisterBenchmark("echo/literal", echoLiteral)->Arg(64)->Arg(512);
    benchmark::RegisterBenchmark("ring/literal", ringLiteral)
        ->Args({64, 220})
        ->Args({512, 220})
        ->Args({512, 8000});
    for (CpuLevel level : {CpuLevel::baseline, CpuLevel::v3, CpuLevel::v4}) {
        if (level > supportedCpuLevel()) continue;
        const std::string name = cpuLevelName(level);
        benchmark::RegisterBenchmark(("echo/" + name).c_str(),
                                     [level](benchmark::State& state) { echo(state, level); })
            ->ArgNames({"frames", "gliding"})
            ->ArgsProduct({{64, 512}, {kAtRest, kGliding, kFilling}});
        benchmark::RegisterBenchmark(("ring/" + name).c_str(),
                                     [level](benchmark::State& state) { ring(state, level); })
            ->ArgNames({"frames", "gliding", "Hz"})
            ->ArgsProduct({{64, 512}, {kAtRest, kGliding}, {220, 8000}});
    }
}

const bool registered = (registerAll(), true);

} // namespace
} // namespace zephyra

// engine_bench: what a grain-sample and a stream block cost, against the plain literal loop.

#include "bench/bench_work.h"
#include "effects/ring_modulator.h"

#include <benchmark/benchmark.h>

namespace zephyra {
namespace {

void reportGrains(benchmark::State& state, double grainSamples, double frames) {
    state.counters["ns/grain-sample"] =
        benchmark::Counter(grainSamples * static_cast<double>(state.iterations()) * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["x real time"] = benchmark::Counter(
        frames * static_cast<double>(state.iterations()) / double{BenchWork::kRate},
        benchmark::Counter::kIsRate);
}

/// The inner body alone: one run that meets no edge.
void innerBody(benchmark::State& state, CpuLevel level) {
    if (level > supportedCpuLevel()) return state.SkipWithError("this processor lacks the level");
    BenchInnerBody body;
    const GrainMixer mixer = grainMixer(level);
    for (auto _ : state) benchmark::DoNotOptimize(body.run(mixer));
    reportGrains(state, BenchInnerBody::kFrames, BenchInnerBody::kFrames);
}
BENCHMARK_CAPTURE(innerBody, baseline, CpuLevel::baseline);
BENCHMARK_CAPTURE(innerBody, v3, CpuLevel::v3);
BENCHMARK_CAPTURE(innerBody, v4, CpuLevel::v4);

enum Stages { kGrains, kGrainsEchoRing };

void stream(benchmark::State& state, Stages stages) {
    const auto block = static_cast<int>(state.range(0));
    const BenchWork work;
    const int frames = 8 * 4096;
    const double grainSamples = BenchWork::grainSamples(*work.engine(), frames, block);
    const auto engine = work.engine();
    engine->echoOn = engine->ringOn = stages == kGrainsEchoRing;
    BenchWork::settle(*engine);
    for (auto _ : state) BenchWork::render(*engine, frames, block);
    reportGrains(state, grainSamples, frames);
}
BENCHMARK_CAPTURE(stream, grains, kGrains)->Arg(64)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(stream, grains_echo_ring, kGrainsEchoRing)->Arg(64)->Arg(512)->Arg(4096);

void literalLoop(benchmark::State& state) {
    const auto block = static_cast<int>(state.range(0));
    const BenchWork work;
    const int frames = 8 * 4096;
    const double grainSamples = BenchWork::grainSamples(*work.engine(), frames, block);
    auto literal = work.literal(*work.engine());
    StereoBlock out(4096);
    for (auto _ : state)
        for (int done = 0; done < frames; done += block)
            literal.render(block, out.left.data(), out.right.data());
    reportGrains(state, grainSamples, frames);
}
BENCHMARK(literalLoop)->Arg(64)->Arg(512)->Arg(4096);

} // namespace
} // namespace zephyra

BENCHMARK_MAIN();

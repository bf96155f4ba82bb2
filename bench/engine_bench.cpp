// engine_bench: what a grain-sample and a stream block cost, against the plain literal loop.

#include "bench/bench_work.h"
#include "effects/ring_modulator.h"

#include <benchmark/benchmark.h>

namespace zephyra {
namespace {

/// Of all iterations together.
void reportGrains(benchmark::State& state, double grainSamples, double frames) {
    state.counters["ns/grain-sample"] = benchmark::Counter(
        grainSamples * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["x real time"] =
        benchmark::Counter(frames / double{BenchWork::kRate}, benchmark::Counter::kIsRate);
}

/// The inner body alone: one run that meets no edge.
void innerBody(benchmark::State& state, CpuLevel level) {
    if (level > supportedCpuLevel()) return state.SkipWithError("this processor lacks the level");
    BenchInnerBody body;
    const GrainMixer mixer = grainMixer(level);
    for (auto _ : state) benchmark::DoNotOptimize(body.run(mixer));
    const auto frames = static_cast<double>(state.iterations() * BenchInnerBody::kFrames);
    reportGrains(state, frames, frames);
}
BENCHMARK_CAPTURE(innerBody, baseline, CpuLevel::baseline);
BENCHMARK_CAPTURE(innerBody, v3, CpuLevel::v3);
BENCHMARK_CAPTURE(innerBody, v4, CpuLevel::v4);

enum Stages { kGrains, kGrainsEchoRing };

void stream(benchmark::State& state, Stages stages) {
    const auto block = static_cast<int>(state.range(0));
    const BenchWork work;
    const int frames = 8 * 4096;
    const auto engine = work.engine();
    engine->echoOn = engine->ringOn = stages == kGrainsEchoRing;
    BenchWork::settle(*engine);
    const std::uint64_t before = engine->soundedSamples();
    for (auto _ : state) BenchWork::render(*engine, frames, block);
    reportGrains(state, static_cast<double>(engine->soundedSamples() - before),
                 static_cast<double>(state.iterations() * frames));
}
BENCHMARK_CAPTURE(stream, grains, kGrains)->Arg(64)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(stream, grains_echo_ring, kGrainsEchoRing)->Arg(64)->Arg(512)->Arg(4096);

/// Grains that start at so many hundredths of ten minutes.
void tenMinutes(benchmark::State& state) {
    static const BenchWork work(600.0);
    const int block = 512, frames = 8 * 4096;
    const auto engine = work.engine();
    engine->setStart(static_cast<float>(state.range(0)) / 100.0f);
    engine->setSpeed(0.0f);
    BenchWork::settle(*engine);
    const std::uint64_t before = engine->soundedSamples();
    for (auto _ : state) BenchWork::render(*engine, frames, block);
    reportGrains(state, static_cast<double>(engine->soundedSamples() - before),
                 static_cast<double>(state.iterations() * frames));
}
BENCHMARK(tenMinutes)->Arg(1)->Arg(50);

/// Grains of each quality, in a pitch of so many semitones, without random ones.
void quality(benchmark::State& state, GrainQuality chosen) {
    const BenchWork work;
    const int block = 512, frames = 8 * 4096;
    const auto engine = work.engine();
    engine->setRndPitch(0.0f);
    engine->setPitch(static_cast<float>(state.range(0)));
    engine->setQuality(chosen);
    BenchWork::settle(*engine);
    const std::uint64_t before = engine->soundedSamples();
    for (auto _ : state) BenchWork::render(*engine, frames, block);
    reportGrains(state, static_cast<double>(engine->soundedSamples() - before),
                 static_cast<double>(state.iterations() * frames));
}
BENCHMARK_CAPTURE(quality, classic, GrainQuality::classic)->Arg(0)->Arg(7)->Arg(24);
BENCHMARK_CAPTURE(quality, fine, GrainQuality::fine)->Arg(0)->Arg(7)->Arg(24);
BENCHMARK_CAPTURE(quality, best, GrainQuality::best)->Arg(0)->Arg(7)->Arg(24);

void literalLoop(benchmark::State& state) {
    const auto block = static_cast<int>(state.range(0));
    const BenchWork work;
    const int frames = 8 * 4096;
    auto literal = work.literal(*work.engine());
    StereoBlock out(4096);
    for (auto _ : state)
        for (int done = 0; done < frames; done += block)
            literal.render(block, out.left.data(), out.right.data());
    const auto rendered = static_cast<double>(state.iterations() * frames);
    reportGrains(state, work.meanGrains(block) * rendered, rendered);
}
BENCHMARK(literalLoop)->Arg(64)->Arg(512)->Arg(4096);

} // namespace
} // namespace zephyra

BENCHMARK_MAIN();

// render_bench: what the whole render command costs, from reading the file to the finished output.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

/// Seconds of output in each render.
constexpr int kSeconds = 60;

void renderCommand(benchmark::State& state, const std::string& options) {
    const auto folder = std::filesystem::temp_directory_path() / "zephyra-render-bench";
    std::filesystem::create_directories(folder);
    const std::string command = "cd '" + folder.string() +
                                "' && '" ZEPHYRA_COMMAND "' render '" ZEPHYRA_SOURCE
                                "' --quiet --seed 1 --seconds " +
                                std::to_string(kSeconds) + " " + options;
    for (auto _ : state)
        if (std::system(command.c_str()) != 0) state.SkipWithError("the command failed");
    std::filesystem::remove_all(folder);
    state.counters["x real time"] = benchmark::Counter(
        kSeconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(renderCommand, wav, "-o out.wav")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(renderCommand, wavAndPicture, "-o out.wav --picture out.png")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(
    renderCommand, echoRingAndFullPool,
    "-o out.wav --set Density=282 --set 'Echo Switch=on' --set 'Ring Modulation Switch=on'")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(renderCommand, m4a, "-o out.m4a")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();

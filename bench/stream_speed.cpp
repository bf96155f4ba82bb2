// stream_speed: renders one stream of grains over a sound file and prints what it cost, so that
// other programs can be timed beside it on the same work.

#include "bench/bench_work.h"
#include "platform/sound/sound_file.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

namespace {

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::shared_ptr<zephyra::mokSample> load(const std::string& path) {
    const auto sound = zephyra::readSoundFile(path);
    if (!sound) {
        std::fprintf(stderr, "%s\n", sound.message().c_str());
        return nullptr;
    }
    const auto& samples = sound.value().samples;
    auto sample = std::make_shared<zephyra::mokSample>(
        samples.size(), static_cast<float>(sound.value().info.sampleRate));
    std::copy(samples.begin(), samples.end(), sample->getPtr());
    sample->writeGuardPoint();
    return sample;
}

} // namespace

int main(int argc, char** argv) {
    using namespace zephyra;
    int grains = mokGranulatorSF::kVoices;
    int block = 512;
    double seconds = 60.0;
    std::string source;
    CLI::App app{"Renders a full pool of 85 ms grains and prints its cost"};
    app.add_option("--grains", grains, "voices in the pool")->check(CLI::Range(1, 4096));
    app.add_option("--block", block, "frames a block")->check(CLI::Range(1, 4096));
    app.add_option("--seconds", seconds, "rendered time")->check(CLI::Range(0.01, 36000.0));
    app.add_option("SOURCE", source, "sound file")->required();
    CLI11_PARSE(app, argc, argv);

    const auto sample = load(source);
    if (!sample) return 1;
    const BenchWork work(sample);
    const auto frames = static_cast<int>(seconds * double{BenchWork::kRate}) / block * block;
    const auto stream = work.engine(grains);
    BenchWork::fillPool(*stream, block);
    const std::uint64_t soundedBefore = stream->soundedSamples();
    const double before = cpuSeconds();
    BenchWork::render(*stream, frames, block);
    const double cost = cpuSeconds() - before;
    const auto grainSamples = static_cast<double>(stream->soundedSamples() - soundedBefore);
    std::printf("mean active grains %.2f\ncpu seconds %.4f\nframes %d\ngrain-samples %.0f\n"
                "nanoseconds per grain-sample %.3f\ntimes real time %.0f\n",
                grainSamples / frames, cost, frames, grainSamples, cost * 1e9 / grainSamples,
                seconds / cost);
}

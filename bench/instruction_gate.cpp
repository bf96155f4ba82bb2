// instruction_gate: the work whose instructions the callgrind gate counts, at one block size, with
// echo and ring modulator at rest when a second argument says "effects".
//
// Run under callgrind with collection toggled by renderCollected; prints the number of
// grain-samples that it rendered.

#include "bench/bench_work.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

[[gnu::noinline]] void renderCollected(zephyra::mokGranulatorSF& stream, int frames, int block) {
    zephyra::BenchWork::render(stream, frames, block);
}

} // namespace

int main(int argc, char** argv) {
    using namespace zephyra;
    const int block = argc > 1 ? std::atoi(argv[1]) : 0;
    if (block < 1 || block > mokGranulatorSF::kMaxBlockFrames) {
        std::fprintf(stderr, "usage: instruction_gate FRAMES (1 to 4096) [effects]\n");
        return 2;
    }
    const BenchWork work(2.0);
    const int frames = 44100 / block * block;
    const auto stream = work.engine();
    if (argc > 2 && std::string_view(argv[2]) == "effects") {
        stream->echoOn = stream->ringOn = true;
        BenchWork::settle(*stream);
    }
    BenchWork::fillPool(*stream, block);
    const std::uint64_t before = stream->soundedSamples();
    renderCollected(*stream, frames, block);
    std::printf("grain-samples %.0f\n", static_cast<double>(stream->soundedSamples() - before));
}

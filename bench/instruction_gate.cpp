// instruction_gate: the work whose instructions the callgrind gate counts, at one block size.
//
// Run under callgrind with collection toggled by renderCollected; prints the number of
// grain-samples that it rendered.

#include "bench/bench_work.h"

#include <cstdio>
#include <cstdlib>

namespace {

[[gnu::noinline]] void renderCollected(zephyra::mokGranulatorSF& stream, int frames, int block) {
    zephyra::BenchWork::render(stream, frames, block);
}

} // namespace

int main(int argc, char** argv) {
    using namespace zephyra;
    const int block = argc > 1 ? std::atoi(argv[1]) : 0;
    if (block < 1 || block > mokGranulatorSF::kMaxBlockFrames) {
        std::fprintf(stderr, "usage: instruction_gate FRAMES (1 to 4096)\n");
        return 2;
    }
    const BenchWork work(2.0);
    const int frames = 44100 / block * block;
    const auto stream = work.engine();
    BenchWork::fillPool(*stream, block);
    const std::uint64_t before = stream->soundedSamples();
    renderCollected(*stream, frames, block);
    std::printf("grain-samples %.0f\n", static_cast<double>(stream->soundedSamples() - before));
}

// Plays arbitrary bytes as render cycles and everything around them. Whatever comes, each cycle
// answers as it must, with finite samples and nothing written that was not asked for.

#include "fuzz/render_cycles.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zephyra::requireNothing(zephyra::playRenderCycles(std::as_bytes(std::span(data, size))));
    return 0;
}

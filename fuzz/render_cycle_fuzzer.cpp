// Plays arbitrary bytes as render cycles and everything around them. Whatever comes, each cycle
// answers as it must, with finite samples and nothing written that was not asked for.

#include "fuzz/render_cycles.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string wrong = zephyra::playRenderCycles(std::as_bytes(std::span(data, size)));
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
}

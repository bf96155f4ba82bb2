// Plays arbitrary bytes as fingers on every surface, and as all that moves controls meanwhile.
// Whatever comes, values stay in their ranges, hands win, and what they held they let go.

#include "fuzz/hands.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string wrong = zephyra::playHands(std::as_bytes(std::span(data, size)));
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
}

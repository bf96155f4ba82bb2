// Plays arbitrary bytes as fingers on every surface, and as all that moves controls meanwhile.
// Whatever comes, values stay in their ranges, hands win, and what they held they let go.

#include "fuzz/hands.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zephyra::requireNothing(zephyra::playHands(std::as_bytes(std::span(data, size))));
    return 0;
}

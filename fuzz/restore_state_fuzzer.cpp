// Restores arbitrary bytes as a state. Whatever comes, restoring ends, what is rendered is finite,
// and what is saved then is written, and restored and saved again the same.

#include "fuzz/require.h"
#include "fuzz/restored_state.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zephyra::requireNothing(zephyra::tryRestoring(std::as_bytes(std::span(data, size))));
    return 0;
}

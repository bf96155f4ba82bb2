// Restores arbitrary bytes as a state. Whatever comes, restoring ends, what is rendered is finite,
// and what is saved then is written, and restored and saved again the same.

#include "fuzz/restored_state.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string wrong = zephyra::tryRestoring(std::as_bytes(std::span(data, size)));
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
}

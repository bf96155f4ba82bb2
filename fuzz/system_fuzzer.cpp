// Lets arbitrary bytes loose on a whole system, in the way that the build names: ZEPHYRA_ATTACK is
// a function of system_attacks.h. Whatever comes, nothing is wrong.

#include "fuzz/require.h"
#include "fuzz/system_attacks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zephyra::requireNothing(zephyra::ZEPHYRA_ATTACK(std::as_bytes(std::span(data, size))));
    return 0;
}

// Fails for one input of four bytes out of four billion; the fuzzer must find it by coverage.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 3 && data[0] == 'g' && data[1] == 'r' && data[2] == 'a' && data[3] == 'i')
        std::abort();
    return 0;
}

#include "platform/large_pages.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zephyra {

void preferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    madvise(memory, size, MADV_HUGEPAGE); // a refusal changes nothing but the speed
#endif
}

} // namespace zephyra

// kLargePage and preferLargePages: memory that the processor maps by the megabyte.
#pragma once

#include <cstddef>

namespace zephyra {

/// Bytes of a large page, and what memory must be aligned to for the system to use them.
inline constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// Asks the system to back size bytes from memory on with large pages: walking through them then
/// takes one look into the page tables where it took 512. Before they are first written. A system
/// that has none ignores it. MAIN or OFF.
void preferLargePages(void* memory, std::size_t size) noexcept;

} // namespace zephyra

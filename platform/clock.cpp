#include "platform/clock.h"

#include <ctime>

namespace zephyra {

std::uint32_t Clock::seconds() const noexcept {
    return fixed_ ? *fixed_ : static_cast<std::uint32_t>(std::time(nullptr));
}

} // namespace zephyra

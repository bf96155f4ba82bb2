#include "cli/terminal/command_clock.h"

#include "platform/text/text_numbers.h"

#include <cstdlib>

namespace zephyra {

Clock commandClock() {
    Clock clock;
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");
    if (const auto seconds = text ? parseWhole(text) : std::nullopt)
        clock.fix(static_cast<std::uint32_t>(*seconds));
    return clock;
}

} // namespace zephyra

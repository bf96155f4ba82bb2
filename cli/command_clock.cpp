#include "cli/command_clock.h"

#include "platform/clock.h"
#include "platform/text/text_numbers.h"

#include <cstdlib>

namespace zephyra {

namespace {

std::uint32_t givenSeconds = 0;

} // namespace

void useClockOfEnvironment() {
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");
    const auto seconds = text ? parseWhole(text) : std::nullopt;
    if (!seconds) return;
    givenSeconds = static_cast<std::uint32_t>(*seconds);
    setSecondsSource([] { return givenSeconds; });
}

} // namespace zephyra

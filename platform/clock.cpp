#include "platform/clock.h"

#include <array>
#include <ctime>

namespace zephyra {

namespace {

/// The clock's seconds without their wrap: the high half comes from the system.
std::time_t momentOf(const Clock& clock) {
    const std::int64_t wraps = std::int64_t{std::time(nullptr)} >> 32;
    return static_cast<std::time_t>((wraps << 32) + clock.seconds());
}

std::string text(const std::tm& moment, const char* format) {
    std::array<char, 64> buffer;
    return {buffer.data(), std::strftime(buffer.data(), buffer.size(), format, &moment)};
}

} // namespace

std::uint32_t Clock::seconds() const noexcept {
    return fixed_ ? *fixed_ : static_cast<std::uint32_t>(std::time(nullptr));
}

DateAndTime currentDateAndTime(const Clock& clock) {
    const std::time_t seconds = momentOf(clock);
    std::tm moment{};
    ::tzset(); // localtime_r alone may not look at TZ again
    ::localtime_r(&seconds, &moment);
    return {text(moment, "%d.%m.%Y"), text(moment, "%H:%M:%S")};
}

} // namespace zephyra

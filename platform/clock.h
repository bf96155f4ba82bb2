// Clock: the time of day as one instance sees it, and the date as preset keys and bank names hold
// it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zephyra {

/// Goes by the system's clock, unless it stands still so that a test or a render repeats. Seeds the
/// grain generator and dates presets. Plain data.
class Clock {
public:
    /// Whole seconds since 1970, modulo 2^32. Any thread but RENDER.
    std::uint32_t seconds() const noexcept;

    /// Stands still there from now on. OFF.
    void fix(std::uint32_t seconds) noexcept { fixed_ = seconds; }

private:
    std::optional<std::uint32_t> fixed_;
};

/// "dd.MM.yyyy" and "HH:mm:ss" of one moment.
struct DateAndTime {
    std::string date, time;
};

/// What the clock shows, in the local time zone. MAIN.
DateAndTime currentDateAndTime(const Clock& clock);

} // namespace zephyra

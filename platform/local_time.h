// DateAndTime: date and time of day as preset keys and bank names hold them.
#pragma once

#include "platform/clock.h"

#include <string>

namespace zephyra {

/// "dd.MM.yyyy" and "HH:mm:ss" of one moment.
struct DateAndTime {
    std::string date, time;
};

/// What the clock shows, in the local time zone. MAIN.
DateAndTime currentDateAndTime(const Clock& clock);

} // namespace zephyra

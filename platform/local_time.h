// DateAndTime: date and time of day as preset keys and bank names hold them.
#pragma once

#include <string>

namespace zephyra {

/// "dd.MM.yyyy" and "HH:mm:ss" of one moment, by the platform's clock (currentSeconds) in the local
/// time zone. MAIN.
struct DateAndTime {
    std::string date, time;
};
DateAndTime currentDateAndTime();

} // namespace zephyra

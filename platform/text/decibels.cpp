#include "platform/text/decibels.h"

#include "platform/text/text_numbers.h"

#include <cmath>

namespace zephyra {

double decibelsOf(double factor) {
    return 20 * std::log10(factor);
}

double factorOf(double decibels) {
    return std::pow(10.0, decibels / 20);
}

std::string decibelText(double factor, const char* silence) {
    return factor > 0 ? formatFixed(decibelsOf(factor), 1) + " dB" : std::string(silence);
}

} // namespace zephyra

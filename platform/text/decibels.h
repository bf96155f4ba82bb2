// decibelsOf and its kin: levels as factors of full scale, as decibels, and as people read them.
#pragma once

#include <string>

namespace zephyra {

// Any thread but RENDER.

double decibelsOf(double factor); ///< of a factor above 0
double factorOf(double decibels);

/// The decibels of a factor with one decimal: "-3.1 dB"; silence where it is none above 0.
std::string decibelText(double factor, const char* silence = "silent");

} // namespace zephyra

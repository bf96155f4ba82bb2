// fixedText: a number with a fixed count of decimals, alike in every locale.
#pragma once

#include <string>

namespace zephyra {

/// number with `decimals` decimals (0 to 100) and a point. Any thread but RENDER.
std::string fixedText(double number, int decimals);

} // namespace zephyra

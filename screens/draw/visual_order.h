// visualOrder: text as its letters stand from left to right.
#pragma once

#include <string>

namespace zephyra {

/// utf8, one line, in the order in which it is drawn from left to right, Arabic letters as they
/// join; the line itself runs from left to right, as the window does. Unchanged where FriBidi is
/// not installed, and for text that is not UTF-8. Any thread.
std::string visualOrder(const std::string& utf8);

} // namespace zephyra

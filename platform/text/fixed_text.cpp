#include "platform/text/fixed_text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace zephyra {

std::string fixedText(double number, int decimals) {
    char text[500]; // a double has up to 309 digits before the point
    const auto [end, error] = std::to_chars(text, text + sizeof text, number,
                                            std::chars_format::fixed, std::clamp(decimals, 0, 100));
    return error == std::errc() ? std::string(text, end) : std::string();
}

} // namespace zephyra

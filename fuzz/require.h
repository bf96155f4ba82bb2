// require: what every fuzzer asks of what it attacks.
#pragma once

#include <cstdlib>
#include <string>

namespace zephyra {

/// Ends the program, which libFuzzer reports with the input.
inline void require(bool kept) {
    if (!kept) std::abort();
}

inline bool isOneLine(const std::string& text) {
    return !text.empty() && text.find('\n') == std::string::npos;
}

} // namespace zephyra

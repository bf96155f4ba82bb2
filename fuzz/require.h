// require: what every fuzzer asks of what it attacks.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zephyra {

/// Ends the program, which libFuzzer reports with the input.
inline void require(bool kept) {
    if (!kept) std::abort();
}

/// The same with a word on what was wrong, which is empty when all is well.
inline void requireNothing(const std::string& wrong) {
    std::fprintf(stderr, "%s", wrong.c_str());
    require(wrong.empty());
}

inline bool isOneLine(const std::string& text) {
    return !text.empty() && text.find('\n') == std::string::npos;
}

} // namespace zephyra

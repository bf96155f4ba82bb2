// ExitCode: how the program ends.
#pragma once

#include "platform/text/message_text.h"

#include <cstdio>
#include <string>

namespace zephyra {

enum class ExitCode : int { success = 0, failure = 1, wrongUsage = 2, interrupted = 130 };

/// Says on standard error, in one line, why the program ends with code; returns code.
inline ExitCode endWith(ExitCode code, const std::string& reason) {
    // Whatever was typed, or stands in a file that is no text.
    std::fprintf(stderr, "zephyra: %s\n", onOneLine(reason).c_str());
    return code;
}

/// Writes text to standard output, or wherever to is; a failure when not all of it went out.
inline ExitCode printOut(const std::string& text, std::FILE* to = stdout) {
    const bool written = std::fwrite(text.data(), 1, text.size(), to) == text.size();
    if (written && std::fflush(to) == 0) return ExitCode::success;
    return endWith(ExitCode::failure,
                   "standard output cannot be written; check where it is redirected to");
}

} // namespace zephyra

// OutputType: a type of sound file that can be written, with its names.
#pragma once

#include "platform/text/four_char_code.h"

#include <string_view>

namespace zephyra {

enum class SampleFormat { shorts, floats };

struct OutputType {
    FourCharCode code;     ///< one of audio_file_type; 0: samples without a header
    const char* name;      ///< as typed, and the extension of files that get their name from us
    const char* otherName; ///< another extension, or null
    const char* title;     ///< for people
    bool isLossy = false;  ///< what is read back may be louder than what was written

    bool isRaw() const { return code == 0; }
};

/// The type of that name or extension, in whatever case; null for none. Any thread.
const OutputType* findOutputType(std::string_view name);

/// What is written when nothing says otherwise. Any thread.
const OutputType& defaultOutputType();

/// Interleaved 32-bit little-endian floats, nothing before or after them. It has no name to be
/// found by: a mistyped extension must not lead there. Any thread.
const OutputType& rawOutputType();

inline constexpr const char* kOutputTypeNames = "wav, aiff, aifc, caf, au, sd2, m4a, flac or ogg";

} // namespace zephyra

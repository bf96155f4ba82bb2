// OutputType: a type of sound file that can be written, with its names.
#pragma once

#include "platform/text/four_char_code.h"

#include <string_view>

namespace zephyra {

enum class SampleFormat { shorts, floats };

struct OutputType {
    FourCharCode code;     ///< one of audio_file_type
    const char* name;      ///< as typed, and the extension of files that get their name from us
    const char* otherName; ///< another extension, or null
    const char* title;     ///< for people
};

/// The type of that name or extension, in whatever case; null for none. Any thread.
const OutputType* findOutputType(std::string_view name);

/// What is written when nothing says otherwise. Any thread.
const OutputType& defaultOutputType();

inline constexpr const char* kOutputTypeNames = "wav, aiff, aifc, caf, au, sd2 or m4a";

} // namespace zephyra

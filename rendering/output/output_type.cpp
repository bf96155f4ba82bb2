#include "rendering/output/output_type.h"

#include "platform/sound/audio_file.h"
#include "platform/text/names.h"

#include <algorithm>
#include <array>
#include <string>

namespace zephyra {

namespace {

constexpr std::array<OutputType, 9> kOutputTypes = {{
    {audio_file_type::wave, "wav", "wave", "WAV"},
    {audio_file_type::aiff, "aiff", "aif", "AIFF"},
    {audio_file_type::aifc, "aifc", nullptr, "AIFC (IMA 4:1)", true},
    {audio_file_type::caff, "caf", nullptr, "CAF"},
    {audio_file_type::next, "au", nullptr, "AU"},
    {audio_file_type::sd2f, "sd2", nullptr, "Sound Designer II"},
    {audio_file_type::m4af, "m4a", nullptr, "M4A (AAC)", true},
    {audio_file_type::flac, "flac", nullptr, "FLAC"},
    {audio_file_type::ogg, "ogg", "oga", "Ogg Vorbis", true},
}};

constexpr OutputType kRaw = {0, "f32", nullptr, "raw"};

} // namespace

const OutputType* findOutputType(std::string_view name) {
    const std::string plain = plainName(name);
    const auto type = std::find_if(kOutputTypes.begin(), kOutputTypes.end(), [&](const auto& one) {
        return plain == one.name || (one.otherName && plain == one.otherName);
    });
    return type == kOutputTypes.end() ? nullptr : type;
}

const OutputType& defaultOutputType() {
    return kOutputTypes[0];
}

const OutputType& rawOutputType() {
    return kRaw;
}

} // namespace zephyra

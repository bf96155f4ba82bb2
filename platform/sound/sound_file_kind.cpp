// Tells the kinds of sound files apart by their first bytes.

#include "platform/sound/sound_file_source.h"

#include <algorithm>

namespace zephyra {
namespace {

bool hasRawExtension(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    for (char& letter : extension)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
    return extension == ".raw";
}

bool isWave(std::string_view head) {
    const std::string_view form = head.substr(0, 4);
    return (form == "RIFF" || form == "RIFX" || form == "RF64") && head.substr(8, 4) == "WAVE";
}

bool isAiff(std::string_view head) {
    const std::string_view type = head.substr(8, 4);
    return head.starts_with("FORM") && (type == "AIFF" || type == "AIFC");
}

/// An ID3v2 tag, or eleven set bits, the start of a frame, with layer III.
bool isMp3(std::string_view head) {
    const auto first = static_cast<unsigned char>(head[0]);
    const auto second = static_cast<unsigned char>(head[1]);
    return head.starts_with("ID3") || (first == 0xff && (second & 0xe6) == 0xe2);
}

} // namespace

SoundFileKind soundFileKind(const std::filesystem::path& path, std::string_view head) noexcept {
    // Headerless samples can begin with any bytes, so the extension goes first.
    if (hasRawExtension(path)) return SoundFileKind::raw;
    if (head.size() < 12) return SoundFileKind::unknown;
    if (isWave(head)) return SoundFileKind::wave;
    if (isAiff(head)) return SoundFileKind::aiff;
    if (head.starts_with("caff")) return SoundFileKind::caf;
    if (head.starts_with(".snd")) return SoundFileKind::au;
    if (head.starts_with("fLaC")) return SoundFileKind::flac;
    if (head.starts_with("OggS")) return SoundFileKind::ogg;
    if (head.substr(4, 4) == "ftyp") return SoundFileKind::mpeg4;
    if (isMp3(head)) return SoundFileKind::mp3;
    return SoundFileKind::unknown;
}

const char* soundFileKindName(SoundFileKind kind) noexcept {
    switch (kind) {
    case SoundFileKind::unknown:
        break;
    case SoundFileKind::raw:
        return "raw";
    case SoundFileKind::wave:
        return "WAV";
    case SoundFileKind::aiff:
        return "AIFF";
    case SoundFileKind::caf:
        return "CAF";
    case SoundFileKind::au:
        return "AU";
    case SoundFileKind::mp3:
        return "MP3";
    case SoundFileKind::mpeg4:
        return "M4A";
    case SoundFileKind::flac:
        return "FLAC";
    case SoundFileKind::ogg:
        return "Ogg";
    }
    return "unknown";
}

} // namespace zephyra

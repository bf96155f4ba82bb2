// Reads sound files by libsndfile: everything but MPEG-4.

#include "platform/sound/unknown_length.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sndfile.h>
#include <span>
#include <system_error>
#include <utility>

namespace zephyra {
namespace {

struct SndfileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfilePtr = std::unique_ptr<SNDFILE, SndfileCloser>;

constexpr std::size_t kTagHead = 10; // bytes

/// The bytes of an ID3v2 tag that stands at offset at; 0 for none.
std::uint64_t tagLength(const FileBytes& file, std::uint64_t at) {
    std::array<unsigned char, kTagHead> head{};
    std::error_code error;
    if (file.readAt(at, std::as_writable_bytes(std::span(head)), error) < kTagHead ||
        std::memcmp(head.data(), "ID3", 3) != 0)
        return 0;
    std::uint64_t length = 0;
    for (const unsigned char seven : std::span(head).subspan(6))
        length = length << 7 | (seven & 127u);
    return length + kTagHead;
}

/// Where a sound of one of the old headers begins that stands behind ID3 tags: libsndfile counts
/// its offsets from the tags when others read for it. 0 for all others.
std::uint64_t beginBehindTags(const FileBytes& file) {
    std::uint64_t at = 0;
    for (std::uint64_t tag = 0; (tag = tagLength(file, at)) > 0;) at += tag;
    char head[12];
    std::error_code error;
    const std::size_t got = file.readAt(at, std::as_writable_bytes(std::span(head)), error);
    switch (soundFileKind("", {head, got})) {
    case SoundFileKind::wave:
    case SoundFileKind::aiff:
    case SoundFileKind::au:
        return at;
    default: // its decoders find their own way
        return 0;
    }
}

/// Where libsndfile reads in a file.
struct Place {
    const FileBytes& file;
    HeaderPatch patch;
    std::uint64_t begin = 0;    ///< what libsndfile takes for the file's
    sf_count_t at = 0;          ///< from there
    std::error_code error = {}; ///< the last read's
};

Place& placeOf(void* user) {
    return *static_cast<Place*>(user);
}

sf_count_t lengthOf(void* user) {
    const Place& place = placeOf(user);
    return static_cast<sf_count_t>(place.file.size() - place.begin);
}

sf_count_t seek(sf_count_t offset, int whence, void* user) {
    Place& place = placeOf(user);
    if (whence == SEEK_CUR) offset += place.at;
    if (whence == SEEK_END) offset += lengthOf(user);
    if (offset < 0) return -1;
    return place.at = offset;
}

sf_count_t read(void* into, sf_count_t count, void* user) {
    Place& place = placeOf(user);
    if (count <= 0) return 0;
    const std::span bytes(static_cast<std::byte*>(into), static_cast<std::size_t>(count));
    const std::uint64_t offset = place.begin + static_cast<std::uint64_t>(place.at);
    const std::size_t got = place.file.readAt(offset, bytes, place.error);
    place.patch.applyTo(offset, bytes.first(got));
    place.at += static_cast<sf_count_t>(got);
    return static_cast<sf_count_t>(got);
}

sf_count_t tell(void* user) {
    return placeOf(user).at;
}

class SndfileSource final : public SoundFileSource {
public:
    SndfileSource(std::unique_ptr<Place> place, SndfilePtr file, SoundFileInfo info)
        : place_(std::move(place)), file_(std::move(file)) {
        info_ = std::move(info);
    }

    Result<std::uint32_t> read(float* interleaved, std::uint32_t maxFrames) override {
        const sf_count_t got = sf_readf_float(file_.get(), interleaved, maxFrames);
        if (place_->error)
            return Failure{"cannot be read to its end: " + place_->error.message() +
                           "; check the disk"};
        return got > 0 ? static_cast<std::uint32_t>(got) : 0u;
    }

private:
    std::unique_ptr<Place> place_; // file_ reads through it
    SndfilePtr file_;
};

int rawSubtype(std::uint32_t bits) {
    switch (bits) {
    case 8:
        return SF_FORMAT_PCM_S8;
    case 16:
        return SF_FORMAT_PCM_16;
    case 24:
        return SF_FORMAT_PCM_24;
    case 32:
        return SF_FORMAT_PCM_32;
    default:
        return 0;
    }
}

/// What libsndfile must be told about a headerless file.
Result<SF_INFO> rawInfo(const RawSoundFormat& raw) {
    if (rawSubtype(raw.bits) == 0)
        return Failure{"cannot be read with " + std::to_string(raw.bits) +
                       " bits a sample; 8, 16, 24 or 32 would do"};
    SF_INFO info{};
    info.format = SF_FORMAT_RAW | SF_ENDIAN_LITTLE | rawSubtype(raw.bits);
    info.channels = static_cast<int>(raw.channels);
    info.samplerate = static_cast<int>(std::lround(raw.sampleRate));
    return info;
}

/// What libsndfile found: behind an ID3 tag that may be anything.
SoundFileKind kindFound(const SF_INFO& info) {
    switch (info.format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_RAW:
        return SoundFileKind::raw;
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_RF64:
        return SoundFileKind::wave;
    case SF_FORMAT_AIFF:
        return SoundFileKind::aiff;
    case SF_FORMAT_CAF:
        return SoundFileKind::caf;
    case SF_FORMAT_AU:
        return SoundFileKind::au;
    case SF_FORMAT_MPEG:
        return SoundFileKind::mp3;
    case SF_FORMAT_FLAC:
        return SoundFileKind::flac;
    case SF_FORMAT_OGG:
        return SoundFileKind::ogg;
    default:
        return SoundFileKind::unknown;
    }
}

std::string formatText(SoundFileKind kind, const SF_INFO& info) {
    SF_FORMAT_INFO subtype{};
    subtype.format = info.format & SF_FORMAT_SUBMASK;
    const bool known =
        sf_command(nullptr, SFC_GET_FORMAT_INFO, &subtype, sizeof subtype) == 0 && subtype.name;
    const std::string name = soundFileKindName(kind);
    return known ? name + ", " + subtype.name : name;
}

/// libsndfile's reason, without the full stop or line end that some of its texts have. Texts about
/// its own insides, which it gives for absurd headers, say nothing to a user.
std::string openFailure() {
    std::string text = sf_strerror(nullptr);
    if (text.find("nternal error") != std::string::npos ||
        text.find("regular file") != std::string::npos)
        return "its header is damaged";
    while (!text.empty() && (text.back() == '.' || text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text;
}

} // namespace

SoundFileSourceResult openSndfileSource(const FileBytes& bytes, SoundFileKind kind,
                                        const RawSoundFormat& raw) {
    SF_INFO info{};
    if (kind == SoundFileKind::raw) {
        const auto told = rawInfo(raw);
        if (!told) return Failure{told.message()};
        info = told.value();
    }
    static SF_VIRTUAL_IO calls = {&lengthOf, &seek, &read, nullptr, &tell};
    auto place = std::make_unique<Place>(
        Place{.file = bytes,
              .patch = lengthPatch(bytes, kind),
              .begin = kind == SoundFileKind::mp3 ? beginBehindTags(bytes) : 0});
    SndfilePtr file(sf_open_virtual(&calls, SFM_READ, &info, place.get()));
    if (!file)
        return Failure{std::string("cannot be read as ") + soundFileKindName(kind) + " (" +
                       openFailure() + "); export it again as 16-bit WAV"};
    const SoundFileKind found = kindFound(info);
    if (found == SoundFileKind::unknown)
        return Failure{"holds no MP3 behind its ID3 tag; export it again as 16-bit WAV"};
    SoundFileInfo described;
    described.format = formatText(found, info);
    described.channels = static_cast<std::uint32_t>(info.channels);
    described.sampleRate = info.samplerate;
    const bool counted = info.frames > 0 && info.frames < SF_COUNT_MAX; // a cut Ogg has the latter
    described.frames = counted ? static_cast<std::uint64_t>(info.frames) : 0;
    return std::unique_ptr<SoundFileSource>(
        new SndfileSource(std::move(place), std::move(file), std::move(described)));
}

} // namespace zephyra

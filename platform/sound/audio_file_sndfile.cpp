#include "platform/files/written_file.h"
#include "platform/sound/audio_file.h"
#include "platform/sound/audio_file_encoder.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/audio_file_sizes.h"
#include "platform/sound/ogg_serial.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <limits>
#include <sndfile.h>
#include <vector>

namespace zephyra {

using namespace audio_file_error;

namespace {

constexpr std::uint32_t kFramesPerWrite = 4096; // bounds the memory for interleaving

/// What a 32-bit size field may count, less room for the headers and chunks around the samples.
constexpr std::uint64_t kMost32BitBytes = std::numeric_limits<std::uint32_t>::max() - 4096ull;

constexpr double kVorbisQuality = 0.8; // of 0 to 1: about 256 kbit/s of stereo at 44100 Hz

struct SndfileCloser {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};
using SndfileHandle = std::unique_ptr<SNDFILE, SndfileCloser>;

int majorFormat(FourCharCode type) {
    switch (type) {
    case audio_file_type::aifc:
    case audio_file_type::aiff:
        return SF_FORMAT_AIFF;
    case audio_file_type::next:
        return SF_FORMAT_AU | SF_ENDIAN_BIG;
    case audio_file_type::caff:
        return SF_FORMAT_CAF | SF_ENDIAN_BIG;
    case audio_file_type::sd2f:
        return SF_FORMAT_SD2;
    case audio_file_type::wave:
        return SF_FORMAT_WAV;
    case audio_file_type::flac:
        return SF_FORMAT_FLAC;
    case audio_file_type::ogg:
        return SF_FORMAT_OGG;
    default:
        return 0;
    }
}

bool has32BitSize(FourCharCode type) {
    constexpr std::array kLarge = {audio_file_type::caff, audio_file_type::sd2f,
                                   audio_file_type::flac, audio_file_type::ogg};
    return std::ranges::find(kLarge, type) == kLarge.end();
}

int linearEncoding(FourCharCode type, const StreamDescription& format) {
    const bool isWave = type == audio_file_type::wave;
    const bool isBigEndian = (format.formatFlags & linear_flags::isBigEndian) != 0;
    if (isBigEndian == isWave) return 0; // WAVE is little-endian, the others big-endian
    if (format.formatFlags & linear_flags::isFloat)
        return isWave && format.bitsPerChannel == 32 ? SF_FORMAT_FLOAT : 0;
    switch (format.bitsPerChannel) {
    case 8:
        return isWave ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_S8;
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

/// The one format that type holds beside others' linear ones; 0 for a linear type.
FourCharCode codedFormat(FourCharCode type) {
    switch (type) {
    case audio_file_type::aifc:
        return fourCC("ima4");
    case audio_file_type::flac:
        return fourCC("flac");
    case audio_file_type::ogg:
        return fourCC("vorb");
    default:
        return 0;
    }
}

/// 0 when type cannot hold the format.
int encoding(FourCharCode type, const StreamDescription& format) {
    const FourCharCode coded = codedFormat(type);
    if (format.formatCode != (coded ? coded : fourCC("lpcm"))) return 0;
    if (type == audio_file_type::aifc) return SF_FORMAT_IMA_ADPCM;
    if (type == audio_file_type::ogg) return SF_FORMAT_VORBIS;
    if (type == audio_file_type::flac) return format.bitsPerChannel == 16 ? SF_FORMAT_PCM_16 : 0;
    return linearEncoding(type, format);
}

/// The rate in whole Hz; 0 for one that no file can hold.
int wholeRate(double rate) {
    const bool fits = rate >= 0.5 && rate < 2147483647.0; // false for NaN
    return fits ? static_cast<int>(std::lround(rate)) : 0;
}

/// What the library would only find out with the first samples.
bool holdsRate(FourCharCode type, int rate) {
    if (type == audio_file_type::flac) return rate <= 65535 || (rate % 10 == 0 && rate <= 655350);
    return type != audio_file_type::ogg || (rate >= 8000 && rate <= 200000);
}

WrittenFile& of(void* self) {
    return *static_cast<WrittenFile*>(self);
}

sf_count_t seek(sf_count_t offset, int whence, void* self) {
    const std::uint64_t base = whence == SEEK_SET   ? 0
                               : whence == SEEK_CUR ? of(self).position()
                                                    : of(self).size();
    const auto position = static_cast<sf_count_t>(base) + offset;
    if (position < 0) return -1;
    of(self).seek(static_cast<std::uint64_t>(position));
    return position;
}

/// A WrittenFile as the library's file.
SF_VIRTUAL_IO virtualCalls() {
    return {.get_filelen = [](void* self) { return static_cast<sf_count_t>(of(self).size()); },
            .seek = seek,
            .read =
                [](void* bytes, sf_count_t count, void* self) {
                    return static_cast<sf_count_t>(of(self).read(
                        {static_cast<std::byte*>(bytes), static_cast<std::size_t>(count)}));
                },
            .write =
                [](const void* bytes, sf_count_t count, void* self) {
                    return of(self).write({static_cast<const std::byte*>(bytes),
                                           static_cast<std::size_t>(count)})
                               ? count
                               : sf_count_t{0};
                },
            .tell = [](void* self) { return static_cast<sf_count_t>(of(self).position()); }};
}

class SndfileEncoder final : public AudioFileEncoder {
public:
    explicit SndfileEncoder(WrittenFile& file) : file_(file) {}

    OSStatus open(FourCharCode type, const StreamDescription& format);
    OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) override;
    OSStatus finish() override;

private:
    template <typename Sample, typename WriteFrames>
    OSStatus writeInterleaved(const AudioBufferList& buffers, std::uint32_t frames,
                              WriteFrames writeFrames);

    /// Of what the library was asked for last, also when it has not reported one.
    OSStatus failure(bool reported) const;
    OSStatus fillLastPacket();

    WrittenFile& file_;
    SndfileHandle sound_;
    FourCharCode type_ = 0;
    std::uint32_t channels_ = 0;
    bool isFloat_ = false;
    std::uint64_t mostBytesPerFrame_ = 0;
    std::uint64_t mostBytes_ = 0;
    std::uint64_t framesWritten_ = 0;
};

OSStatus SndfileEncoder::open(FourCharCode type, const StreamDescription& format) {
    const int major = majorFormat(type);
    if (major == 0) return unsupportedFileType;
    const int minor = encoding(type, format);
    SF_INFO info{};
    info.samplerate = wholeRate(format.sampleRate);
    // The library refuses channel counts far below the range of int.
    info.channels = static_cast<int>(std::min<std::uint32_t>(format.channelsPerFrame, 1u << 16));
    info.format = major | minor;
    if (minor == 0 || info.samplerate == 0 || !holdsRate(type, info.samplerate) ||
        !sf_format_check(&info))
        return unsupportedDataFormat;

    type_ = type;
    SF_VIRTUAL_IO calls = virtualCalls();
    // SD2 has a second file, which the library finds by the name of the first.
    sound_.reset(type == audio_file_type::sd2f ? sf_open(file_.path().c_str(), SFM_WRITE, &info)
                                               : sf_open_virtual(&calls, SFM_WRITE, &info, &file_));
    if (!sound_) return failure(true);
    // The peak chunk holds the time of writing: the same samples must give the same bytes.
    sf_command(sound_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    channels_ = format.channelsPerFrame;
    isFloat_ = minor == SF_FORMAT_FLOAT || minor == SF_FORMAT_VORBIS;
    double quality = kVorbisQuality;
    if (minor == SF_FORMAT_VORBIS)
        sf_command(sound_.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    const std::uint32_t mostBytesPerSample = std::max(format.bitsPerChannel / 8, 1u);
    mostBytesPerFrame_ = std::uint64_t{format.channelsPerFrame} * mostBytesPerSample;
    mostBytes_ = has32BitSize(type) ? kMost32BitBytes : std::numeric_limits<std::uint64_t>::max();
    return none;
}

template <typename Sample, typename WriteFrames>
OSStatus SndfileEncoder::writeInterleaved(const AudioBufferList& buffers, std::uint32_t frames,
                                          WriteFrames writeFrames) {
    const std::size_t channels = buffers.mNumberBuffers;
    std::vector<Sample> interleaved(channels * std::min(frames, kFramesPerWrite));
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t part = std::min(frames - done, kFramesPerWrite);
        for (std::size_t c = 0; c < channels; ++c) {
            const auto* samples = static_cast<const Sample*>(buffers.mBuffers[c].mData) + done;
            for (std::uint32_t i = 0; i < part; ++i) interleaved[i * channels + c] = samples[i];
        }
        const bool isTaken = writeFrames(sound_.get(), interleaved.data(), part) == part;
        if (const OSStatus status = failure(!isTaken)) return status;
        done += part;
    }
    framesWritten_ += frames;
    return none;
}

OSStatus SndfileEncoder::write(const AudioBufferList& buffers, std::uint32_t frames) {
    if ((framesWritten_ + frames) * mostBytesPerFrame_ > mostBytes_) return sizeBeyond32Bits;
    return isFloat_ ? writeInterleaved<float>(buffers, frames, sf_writef_float)
                    : writeInterleaved<short>(buffers, frames, sf_writef_short);
}

OSStatus SndfileEncoder::failure(bool reported) const {
    // Of a file that it writes by name the library tells, and the system says what it was.
    const bool isByName = type_ == audio_file_type::sd2f;
    const std::error_code error =
        isByName && reported ? std::error_code(errno, std::generic_category()) : file_.error();
    return reported && !error ? unspecified : audioFileStatus(error);
}

/// With silence: the library leaves the sound of the packet before behind the end.
OSStatus SndfileEncoder::fillLastPacket() {
    const std::uint64_t rest = framesWritten_ % kFramesPerIma4Packet;
    if (rest == 0) return none;
    const auto missing = static_cast<sf_count_t>(kFramesPerIma4Packet - rest);
    const std::vector<short> silence(static_cast<std::size_t>(missing) * channels_);
    return failure(sf_writef_short(sound_.get(), silence.data(), missing) != missing);
}

OSStatus SndfileEncoder::finish() {
    if (type_ == audio_file_type::aifc)
        if (const OSStatus status = fillLastPacket()) return status;
    // The last block and the header are written now.
    const bool isClosed = sf_close(sound_.release()) == 0;
    if (const OSStatus status = failure(!isClosed)) return status;
    if (type_ == audio_file_type::ogg) return settleOggSerial(file_);
    return correctSizes(file_, type_, framesWritten_, framesWritten_ * mostBytesPerFrame_);
}

} // namespace

std::unique_ptr<AudioFileEncoder> makeSndfileEncoder(WrittenFile& file, FourCharCode type,
                                                     const StreamDescription& format,
                                                     OSStatus& status) {
    auto encoder = std::make_unique<SndfileEncoder>(file);
    status = encoder->open(type, format);
    if (status != none) encoder.reset();
    return encoder;
}

} // namespace zephyra

#include "platform/sound/audio_file.h"
#include "platform/sound/audio_file_encoder.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/audio_file_sizes.h"

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

constexpr std::uint64_t kLeastKnownFile = 12; // bytes

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
    default:
        return 0;
    }
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

/// 0 when type cannot hold the format.
int encoding(FourCharCode type, const StreamDescription& format) {
    const FourCharCode wanted = type == audio_file_type::aifc ? fourCC("ima4") : fourCC("lpcm");
    if (format.formatCode != wanted) return 0;
    return type == audio_file_type::aifc ? SF_FORMAT_IMA_ADPCM : linearEncoding(type, format);
}

/// The rate in whole Hz; 0 for one that no file can hold.
int wholeRate(double rate) {
    const bool fits = rate >= 0.5 && rate < 2147483647.0; // false for NaN
    return fits ? static_cast<int>(std::lround(rate)) : 0;
}

/// What the system's last error means; only to be asked when there was one.
OSStatus lastWriteStatus() {
    const OSStatus status = audioFileStatus({errno, std::generic_category()});
    return status == none ? unspecified : status;
}

class SndfileEncoder final : public AudioFileEncoder {
public:
    OSStatus open(const std::filesystem::path& path, FourCharCode type,
                  const StreamDescription& format);
    OSStatus write(const AudioBufferList& buffers, std::uint32_t frames) override;
    OSStatus finish() override;

private:
    template <typename Sample, typename WriteFrames>
    OSStatus writeInterleaved(const AudioBufferList& buffers, std::uint32_t frames,
                              WriteFrames writeFrames);

    /// Whether the closed file is all there.
    OSStatus verify(std::uint64_t dataBytes) const;

    SndfileHandle file_;
    std::filesystem::path path_;
    FourCharCode type_ = 0;
    bool isFloat_ = false;
    std::uint64_t mostBytesPerFrame_ = 0;
    std::uint64_t mostBytes_ = 0;
    std::uint64_t framesWritten_ = 0;
};

OSStatus SndfileEncoder::open(const std::filesystem::path& path, FourCharCode type,
                              const StreamDescription& format) {
    const int major = majorFormat(type);
    if (major == 0) return unsupportedFileType;
    const int minor = encoding(type, format);
    SF_INFO info{};
    info.samplerate = wholeRate(format.sampleRate);
    // The library refuses channel counts far below the range of int.
    info.channels = static_cast<int>(std::min<std::uint32_t>(format.channelsPerFrame, 1u << 16));
    info.format = major | minor;
    if (minor == 0 || info.samplerate == 0 || !sf_format_check(&info)) return unsupportedDataFormat;

    errno = 0;
    file_.reset(sf_open(path.c_str(), SFM_WRITE, &info));
    if (!file_) return lastWriteStatus();
    // The peak chunk holds the time of writing: the same samples must give the same bytes.
    sf_command(file_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    path_ = path;
    type_ = type;
    isFloat_ = minor == SF_FORMAT_FLOAT;
    const std::uint32_t mostBytesPerSample = std::max(format.bitsPerChannel / 8, 1u);
    mostBytesPerFrame_ = std::uint64_t{format.channelsPerFrame} * mostBytesPerSample;
    const bool has32BitSize = type != audio_file_type::caff && type != audio_file_type::sd2f;
    mostBytes_ = has32BitSize ? kMost32BitBytes : std::numeric_limits<std::uint64_t>::max();
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
        errno = 0;
        if (writeFrames(file_.get(), interleaved.data(), part) != part) return lastWriteStatus();
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

OSStatus SndfileEncoder::verify(std::uint64_t dataBytes) const {
    // SD2's file is bare samples, and the library knows no file of fewer bytes.
    if (type_ == audio_file_type::sd2f && dataBytes < kLeastKnownFile) return none;
    SF_INFO info{};
    const SndfileHandle written(sf_open(path_.c_str(), SFM_READ, &info));
    const bool isComplete = written && info.frames >= static_cast<sf_count_t>(framesWritten_);
    return isComplete ? none : unspecified;
}

OSStatus SndfileEncoder::finish() {
    // The last block, the header and a side file are written on closing, where the library drops
    // most failures: the error of the system shows them, and reading the header back.
    errno = 0;
    const bool closed = sf_close(file_.release()) == 0;
    const OSStatus status = lastWriteStatus();
    if (!closed || status == diskFull) return status;

    const std::uint64_t dataBytes = framesWritten_ * mostBytesPerFrame_;
    const OSStatus corrected = correctSizes(path_, type_, framesWritten_, dataBytes);
    return corrected == none ? verify(dataBytes) : corrected;
}

} // namespace

std::unique_ptr<AudioFileEncoder> makeSndfileEncoder(const std::filesystem::path& path,
                                                     FourCharCode type,
                                                     const StreamDescription& format,
                                                     OSStatus& status) {
    auto encoder = std::make_unique<SndfileEncoder>();
    status = encoder->open(path, type, format);
    if (status != none) encoder.reset();
    return encoder;
}

} // namespace zephyra

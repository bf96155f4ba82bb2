#include "stream/audio_file_writer.h"

#include "platform/sound/audio_buffer_list.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/sample_limits.h"
#include "platform/text/log.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace zephyra {

namespace {

constexpr std::uint32_t kBytesPerSample = 2;

constexpr std::uint32_t kBigEndianIntegers =
    linear_flags::isBigEndian | linear_flags::isSignedInteger | linear_flags::isPacked;
constexpr std::uint32_t kLittleEndianIntegers =
    linear_flags::isSignedInteger | linear_flags::isPacked;
constexpr std::uint32_t kAacLowComplexity = 2;
constexpr std::uint32_t kAacFramesPerPacket = 1024;

using BufferList = std::unique_ptr<AudioBufferList, decltype(&DestroyAudioBufferList)>;

/// One silent buffer per channel; none when memory is short.
BufferList makeBuffers(std::uint32_t channels, std::uint32_t frames) {
    const bool fits = frames <= std::numeric_limits<std::uint32_t>::max() / kBytesPerSample;
    return {fits ? AllocateAudioBufferList(channels, frames * kBytesPerSample) : nullptr,
            &DestroyAudioBufferList};
}

std::int16_t* shorts(const BufferList& list, std::uint32_t channel) {
    return static_cast<std::int16_t*>(list->mBuffers[channel].mData);
}

/// The integer part saturated to 32 bits, of which the low 16 are kept.
std::int16_t lowBitsOfIntegerPart(float value) {
    constexpr float kTwoTo31 = 2147483648.0f;
    std::int32_t whole = 0;
    if (value >= kTwoTo31)
        whole = std::numeric_limits<std::int32_t>::max();
    else if (value < -kTwoTo31)
        whole = std::numeric_limits<std::int32_t>::min();
    else if (!std::isnan(value))
        whole = static_cast<std::int32_t>(value);
    return static_cast<std::int16_t>(whole);
}

/// Reports a failure of operation to the log; true when there was one.
bool failed(Log& log, const char* operation, OSStatus status) {
    if (status == audio_file_error::none) return false;
    const std::string code = fourCharText(static_cast<FourCharCode>(status));
    char line[96];
    std::snprintf(line, sizeof line, "%s FAILED! %d '%-4.4s'", operation, status, code.c_str());
    log.write(line);
    return true;
}

std::uint32_t writeBuffers(Log& log, const ExtAudioFileRef& file, std::uint32_t frames,
                           const BufferList& list) {
    const OSStatus status = ExtAudioFileWrite(file, frames, *list);
    failed(log, "ExtAudioFileWrite", status);
    return static_cast<std::uint32_t>(status);
}

} // namespace

void EAFWrite::SetupStreamAndFileFormatForType_withSR_channels_wordlength(
    FourCharCode type, double sr, std::uint32_t channels, std::uint32_t wordLength) {
    const std::uint32_t bits = wordLength / 8 * 8;
    const std::uint32_t bytes = bits / 8 * channels;
    mType = type;
    switch (type) {
    case audio_file_type::aifc:
        mStreamFormat = {sr, fourCC("ima4"), 0, 0, 1, 0, channels, 0};
        break;
    case audio_file_type::aiff:
    case audio_file_type::next:
    case audio_file_type::caff:
    case audio_file_type::sd2f:
        mStreamFormat = {sr, fourCC("lpcm"), kBigEndianIntegers, bytes, 1, bytes, channels, bits};
        break;
    case audio_file_type::wave:
        mStreamFormat = {sr,  fourCC("lpcm"), kLittleEndianIntegers, bytes, 1, bytes, channels,
                         bits};
        break;
    case audio_file_type::m4af:
        mStreamFormat = {sr, fourCC("aac "), kAacLowComplexity, 0, kAacFramesPerPacket, 0, channels,
                         0};
        break;
    default:
        mType = 0;
        mStreamFormat = {};
    }
}

OSStatus EAFWrite::openFileForWrite_sr_channels_wordLength_type(const std::filesystem::path& path,
                                                                double sr, std::uint32_t channels,
                                                                std::uint32_t wordLength,
                                                                FourCharCode type) {
    mOutputAudioFile.reset();
    mAfid.reset();
    SetupStreamAndFileFormatForType_withSR_channels_wordlength(type, sr, channels, wordLength);
    mAudioChannels = channels;
    mOutputFormat = {sr,
                     fourCC("lpcm"),
                     linear_flags::isSignedInteger | linear_flags::isNonInterleaved,
                     kBytesPerSample,
                     1,
                     kBytesPerSample,
                     channels,
                     8 * kBytesPerSample};

    OSStatus status = AudioFileCreate(path, mType, mStreamFormat, mAfid, &log_);
    if (failed(log_, "AudioFileCreate", status)) return status;
    status = ExtAudioFileWrapAudioFileID(mAfid, mOutputAudioFile);
    if (failed(log_, "ExtAudioFileWrapAudioFileID", status)) return status;
    // File and client have equally many channels, so no channel map is needed.
    status = ExtAudioFileSetProperty(mOutputAudioFile, mOutputFormat);
    failed(log_, "ExtAudioFileSetProperty", status);
    return status;
}

std::uint32_t EAFWrite::writeShorts_fromArray(std::uint32_t frames,
                                              const std::int16_t* const* array) {
    if (frames == 0 || !array) return kNothingWritten;
    const BufferList list = makeBuffers(mAudioChannels, frames);
    if (!list) return kNothingWritten;
    for (std::uint32_t c = 0; c < mAudioChannels; ++c)
        if (array[c]) std::copy_n(array[c], frames, shorts(list, c));
    return writeBuffers(log_, mOutputAudioFile, frames, list);
}

std::uint32_t EAFWrite::writeFloats_fromArray(std::uint32_t frames, float* const* array) {
    if (frames == 0 || !array) return kNothingWritten;
    const BufferList list = makeBuffers(mAudioChannels, frames);
    if (!list) return kNothingWritten;
    for (std::uint32_t c = 0; c < mAudioChannels; ++c) {
        if (!array[c]) continue;
        for (std::uint32_t i = 0; i < frames; ++i) {
            array[c][i] = limitedSample(array[c][i]);
            shorts(list, c)[i] = sixteenBits(array[c][i]);
        }
    }
    return writeBuffers(log_, mOutputAudioFile, frames, list);
}

std::uint32_t EAFWrite::writeShortsMok_fromArray(std::uint32_t frames, const std::int16_t* array) {
    if (frames == 0 || !array) return kNothingWritten;
    const BufferList list = makeBuffers(mAudioChannels, frames);
    if (!list) return kNothingWritten;
    for (std::uint32_t c = 0; c < std::min(mAudioChannels, 2u); ++c)
        std::copy_n(array, frames, shorts(list, c));
    return writeBuffers(log_, mOutputAudioFile, frames, list);
}

std::uint32_t EAFWrite::writeFloatsMok_fromArray(std::uint32_t frames,
                                                 const StereoFloatArrays* array) {
    if (frames == 0 || !array) return kNothingWritten;
    const BufferList list = makeBuffers(mAudioChannels, frames);
    if (!list) return kNothingWritten;
    const float* const sides[2] = {array->left, array->right};
    for (std::uint32_t c = 0; c < std::min(mAudioChannels, 2u); ++c) {
        if (!sides[c]) continue;
        std::transform(sides[c], sides[c] + frames, shorts(list, c),
                       [](float value) { return lowBitsOfIntegerPart(value * 32767.0f); });
    }
    return writeBuffers(log_, mOutputAudioFile, frames, list);
}

OSStatus EAFWrite::closeFile() {
    // A failure shows again in AudioFileClose, which must run in any case.
    static_cast<void>(AudioFileOptimize(mAfid));
    static_cast<void>(ExtAudioFileDispose(std::move(mOutputAudioFile)));
    const OSStatus status = AudioFileClose(std::move(mAfid));
    std::fflush(nullptr);
    return status;
}

} // namespace zephyra

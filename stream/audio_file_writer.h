// EAFWrite: writes floats or 16-bit samples to a new sound file.
#pragma once

#include "platform/sound/audio_file.h"
#include "platform/sound/stream_description.h"

#include <cstdint>
#include <filesystem>

namespace zephyra {

class Log;

/// A left and a right array of the same length; a missing one is silent.
struct StereoFloatArrays {
    const float* left = nullptr;
    const float* right = nullptr;
};

/// Order of calls: openFileForWrite, any write as often as needed, closeFile. The file always gets
/// 16-bit samples, one buffer per channel. It stands under its name from closeFile on; a writer
/// that is opened again or destroyed before leaves what was there. Every write returns 0, the
/// platform's error code (audio_file_error.h), or kNothingWritten when the frame count is 0, the
/// array is missing or memory is short. A NaN sample is written as 0. All operations are MAIN or
/// WORKER.
class EAFWrite {
public:
    static constexpr std::uint32_t kNothingWritten = 0xFFFFFFFF;

    /// log hears of every failure, with the operation and its code; it must outlive this.
    explicit EAFWrite(Log& log) : log_(log) {}

    /// Fills the file's data format and type. sr in Hz; wordLength in bits, rounded down to whole
    /// bytes, counts for linear types only. An unknown type leaves the type and the format 0.
    void SetupStreamAndFileFormatForType_withSR_channels_wordlength(FourCharCode type, double sr,
                                                                    std::uint32_t channels,
                                                                    std::uint32_t wordLength);

    /// Begins a file for path, replacing an existing one on closeFile. Returns 0 or the platform's
    /// error code, after a line in the log.
    OSStatus openFileForWrite_sr_channels_wordLength_type(const std::filesystem::path& path,
                                                          double sr, std::uint32_t channels,
                                                          std::uint32_t wordLength,
                                                          FourCharCode type);

    /// array: one array of frames samples per channel; a missing one is silent.
    std::uint32_t writeShorts_fromArray(std::uint32_t frames, const std::int16_t* const* array);

    /// array: one array of frames samples per channel; a missing one is silent. Limits the caller's
    /// samples to -1 .. 0.999 in place (NaN becomes 0) and writes the integer part of value ·
    /// 32768.
    std::uint32_t writeFloats_fromArray(std::uint32_t frames, float* const* array);

    /// array: frames samples, written to the first two channels alike.
    std::uint32_t writeShortsMok_fromArray(std::uint32_t frames, const std::int16_t* array);

    /// Writes left and right to the first two channels, as the integer part of value · 32767
    /// without a limit: it saturates to 32 bits, of which the low 16 are kept.
    std::uint32_t writeFloatsMok_fromArray(std::uint32_t frames, const StereoFloatArrays* array);

    /// Completes the file, puts it under its name and flushes all output streams. Returns 0 or the
    /// platform's error code: after a failed write the file is abandoned and the failure repeated.
    OSStatus closeFile();

    ExtAudioFileRef mOutputAudioFile;
    std::uint32_t mAudioChannels = 0; ///< of the written data
    StreamDescription mOutputFormat;  ///< of the samples handed over
    StreamDescription mStreamFormat;  ///< of the file
    FourCharCode mType = 0;           ///< one of audio_file_type, 0 when unset
    AudioFileID mAfid;

private:
    Log& log_;
};

} // namespace zephyra

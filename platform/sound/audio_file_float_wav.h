// FloatWavWriter: writes a 32-bit float WAV file block by block.
#pragma once

#include "platform/sound/audio_file.h"
#include "platform/text/result.h"

#include <cstdint>
#include <filesystem>

namespace zephyra {

/// Order of calls: open, write as often as needed, close. The file stands under its name from close
/// on; a writer destroyed before leaves what was there. Not copyable; MAIN or WORKER. Failures name
/// the file and what would be right.
class FloatWavWriter {
public:
    /// Begins a file of sampleRate Hz (rounded to whole ones) and 1 to 1024 channels, abandoning
    /// one that was open.
    Result<void> open(const std::filesystem::path& path, double sampleRate, std::uint32_t channels);

    /// Appends frames, one array per channel. Values may exceed -1..1; NaN and infinities, which no
    /// player can play, are written as 0.
    Result<void> write(const float* const* channels, std::uint32_t frames);

    /// Completes the file and puts it under its name.
    Result<void> close();

private:
    AudioFileID file_;
    ExtAudioFileRef samples_;
    std::filesystem::path path_;
    std::uint32_t channels_ = 0;
};

} // namespace zephyra

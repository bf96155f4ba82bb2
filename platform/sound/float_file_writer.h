// FloatFileWriter: writes floats to a sound file, block by block.
#pragma once

#include "platform/sound/audio_file.h"
#include "platform/text/result.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace zephyra {

/// Order of calls: open, write as often as needed, close. The file stands under its name from close
/// on; a writer destroyed before leaves what was there. Not copyable; MAIN or WORKER. Failures name
/// the file and what would be right.
class FloatFileWriter {
public:
    /// What becomes of the floats. NaN is written as 0 everywhere.
    enum class Coding {
        wav,    ///< kept as they are, beyond -1..1 too; infinities, which no player can play, are 0
        flac,   ///< limited, 16 bits: the samples of a 16-bit WAV
        vorbis, ///< limited, about 256 kbit/s for two channels at 44100 Hz
    };

    /// Begins a file of sampleRate Hz (rounded to whole ones), which FLAC and Vorbis bound, and 1
    /// to 8 channels (WAV: 1024), abandoning one that was open.
    Result<void> open(const std::filesystem::path& path, double sampleRate, std::uint32_t channels,
                      Coding coding = Coding::wav);

    /// Appends frames, one array per channel.
    Result<void> write(const float* const* channels, std::uint32_t frames);

    /// Completes the file and puts it under its name.
    Result<void> close();

private:
    template <typename Sample, typename Convert>
    OSStatus writePart(const float* const* channels, std::uint32_t from, std::uint32_t frames,
                       std::vector<Sample>& converted, Convert convert);

    AudioFileID file_;
    ExtAudioFileRef samples_;
    std::filesystem::path path_;
    std::uint32_t channels_ = 0;
    Coding coding_ = Coding::wav;
    std::vector<float> floats_; // a part of a block as the file takes it
    std::vector<std::int16_t> shorts_;
};

} // namespace zephyra

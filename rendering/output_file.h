// OutputFile: the stereo file that a render goes into, and what was measured on the way.
#pragma once

#include "platform/sound/float_file_writer.h"
#include "platform/text/log.h"
#include "platform/text/result.h"
#include "rendering/output_type.h"
#include "stream/audio_file_writer.h"

#include <cstdint>
#include <filesystem>

namespace zephyra {

/// Order of calls: open, write as often as needed, close. The file stands under its name from close
/// on; until then, and after a failure, what was there before stays. MAIN.
class OutputFile {
public:
    /// sampleRate in Hz. SampleFormat::floats is for WAV.
    Result<void> open(const std::filesystem::path& path, const OutputType& type,
                      SampleFormat format, double sampleRate);

    /// Appends frames. 16-bit files limit what exceeds full scale, in the caller's arrays too.
    Result<void> write(float* left, float* right, std::uint32_t frames);

    Result<void> close();

    /// Of the sound before it was limited: the largest magnitude, and the root mean square over
    /// both channels.
    double peak() const noexcept { return peak_; }
    double rms() const noexcept;
    /// The DC offset of the channel that has more of it.
    double offset() const noexcept;
    /// Samples that a 16-bit file could not hold and had to limit.
    std::uint64_t limitedSamples() const noexcept { return limited_; }

private:
    void measure(const float* samples, std::uint32_t frames, double& sum);

    SampleFormat format_ = SampleFormat::shorts;
    std::filesystem::path path_;
    Log unheard_{[](std::string_view) {}}; // what fails is told by return
    EAFWrite shorts_{unheard_};
    FloatFileWriter floats_;
    double peak_ = 0, squares_ = 0, leftSum_ = 0, rightSum_ = 0;
    std::uint64_t samples_ = 0, limited_ = 0;
};

} // namespace zephyra

// OutputFile: the stereo file that a render goes into, and what was measured on the way.
#pragma once

#include "platform/text/result.h"
#include "rendering/output/output_sink.h"

#include <cstdint>
#include <memory>

namespace zephyra {

/// Order of calls: open, write as often as needed, close. The file stands under its name from close
/// on; until then, and after a failure, what was there before stays. What is no file, a pipe or
/// device, gets the samples as they come. MAIN.
class OutputFile {
public:
    /// A pipe waits for its reader as long as goesOn says.
    Result<void> open(const OutputTarget& target, const ByteStream::GoesOn& goesOn = {});

    /// Appends frames. 16-bit files limit what exceeds full scale, in the caller's arrays too.
    Result<void> write(float* left, float* right, std::uint32_t frames);

    Result<void> close();

    /// Of the sound before it was limited: the largest magnitude, and the root mean square over
    /// both channels.
    double peak() const noexcept { return peak_; }
    double rms() const noexcept;
    /// The DC offset of the channel that has more of it.
    double offset() const noexcept;
    /// Samples that a 16-bit file, or one that is coded with a loss, had to limit.
    std::uint64_t limitedSamples() const noexcept { return limited_; }

private:
    void measure(const float* samples, std::uint32_t frames, double& sum);

    std::unique_ptr<OutputSink> sink_;
    bool limits_ = true;
    double peak_ = 0, squares_ = 0, leftSum_ = 0, rightSum_ = 0;
    std::uint64_t samples_ = 0, limited_ = 0;
};

} // namespace zephyra

// OutputSink: where the samples of a render go.
#pragma once

#include "platform/files/byte_stream.h"
#include "platform/text/result.h"
#include "rendering/output/output_type.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace zephyra {

/// Everything that is known of a file before its first sample.
struct OutputTarget {
    std::filesystem::path path; ///< ByteStream::isNamedBy, or a file's name
    OutputType type = {};
    SampleFormat format = SampleFormat::shorts; ///< floats are for WAV and raw samples
    double sampleRate = 0;                      ///< Hz
    std::uint64_t frames = 0;                   ///< all that will be written
};

inline constexpr std::uint32_t kOutputChannels = 2;

/// Order of calls: write as often as needed, close. A file stands under its name from close on;
/// until then, and after a failure, what was there before stays. MAIN.
class OutputSink {
public:
    virtual ~OutputSink() = default;

    /// Appends frames of kOutputChannels arrays. 16-bit types limit what exceeds full scale, in the
    /// caller's arrays, too.
    virtual Result<void> write(float* const* channels, std::uint32_t frames) = 0;

    virtual Result<void> close() = 0;
};

using OutputSinkResult = Result<std::unique_ptr<OutputSink>>;

/// A pipe waits for its reader as long as goesOn says.
OutputSinkResult openOutputSink(const OutputTarget& target, const ByteStream::GoesOn& goesOn);

/// Parts of it: for a named file, raw samples excluded; for those, and for every stream.
OutputSinkResult openFileSink(const OutputTarget& target);
OutputSinkResult openStreamSink(const OutputTarget& target, const ByteStream::GoesOn& goesOn);

/// "standard output", or the file's name: for messages. Any thread.
std::string outputTitle(const std::filesystem::path& path);

/// The line of a render that was ended before its file was complete. Any thread.
std::string interruptedText(const std::filesystem::path& path);

} // namespace zephyra

#include "rendering/output/output_sink.h"

namespace zephyra {

OutputSinkResult openOutputSink(const OutputTarget& target, const ByteStream::GoesOn& goesOn) {
    if (target.type.isRaw() || ByteStream::isNamedBy(target.path))
        return openStreamSink(target, goesOn);
    return openFileSink(target);
}

std::string outputTitle(const std::filesystem::path& path) {
    return ByteStream::isStandardOutput(path) ? "standard output" : path.string();
}

std::string interruptedText(const std::filesystem::path& path) {
    return "interrupted; " + (ByteStream::isNamedBy(path)
                                  ? "not all of the sound went to " + outputTitle(path)
                                  : path.string() + " was not written");
}

} // namespace zephyra

// Opens sound files of all kinds, with every check, and reads them into one mono signal.

#include "platform/sound/sound_file.h"

#include "platform/sound/sound_file_source.h"
#include "platform/text/one_line.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zephyra {
namespace {

/// Floats decoded at a time: large enough to make calls cheap, small enough for prompt cancelling.
constexpr std::uint32_t kBlockFloats = 65536;

constexpr const char* kWanted = "; a raw, wav, aif, aiff, aifc, caf, mp3, m4a, flac or ogg file is "
                                "needed";

/// "NAME reason" on one line whatever bytes the name has.
Failure failure(const std::filesystem::path& path, const std::string& reason) {
    return Failure{onOneLine(path.string()) + " " + reason};
}

std::string cannotBeOpened(int error) {
    return std::string("cannot be opened: ") + std::strerror(error) + kWanted;
}

/// A file descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    ~Descriptor() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    int get() const noexcept { return descriptor_; }

private:
    int descriptor_;
};

struct OpenedSource {
    Descriptor descriptor; // outlives source, which reads through it
    std::unique_ptr<SoundFileSource> source;
    std::uint64_t fileBytes;
};

/// Opens a regular file with something in it. A device or pipe is not even opened: that may wait
/// for ever or have effects.
Result<Descriptor> openRegular(const std::filesystem::path& path, std::uint64_t& bytes) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return Failure{cannotBeOpened(errno)};
    if (S_ISDIR(status.st_mode)) return Failure{std::string("is a folder") + kWanted};
    if (!S_ISREG(status.st_mode)) return Failure{std::string("is no regular file") + kWanted};
    if (status.st_size == 0) return Failure{std::string("is empty") + kWanted};
    // Not waiting, in case a pipe has taken the file's place since.
    Descriptor descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor.get() < 0) return Failure{cannotBeOpened(errno)};
    bytes = static_cast<std::uint64_t>(status.st_size);
    return descriptor;
}

/// Refuses what no sound has, whether a header claims it or the caller says it of a raw file.
Result<void> checkLayout(double sampleRate, std::uint32_t channels) {
    char text[100];
    if (channels < 1 || channels > kMaxSoundFileChannels)
        std::snprintf(text, sizeof text, "has %u channels; 1 to %u would be right", channels,
                      kMaxSoundFileChannels);
    else if (!(sampleRate >= kMinSoundFileRate && sampleRate <= kMaxSoundFileRate))
        std::snprintf(text, sizeof text, "has a rate of %.9g Hz; %.0f to %.0f would be right",
                      sampleRate, kMinSoundFileRate, kMaxSoundFileRate);
    else
        return {};
    return Failure{text};
}

SoundFileSourceResult openKind(const std::filesystem::path& path, int descriptor,
                               const RawSoundFormat& raw) {
    char head[12];
    const ssize_t got = pread(descriptor, head, sizeof head, 0);
    if (got < 0) return Failure{cannotBeOpened(errno)};
    const auto kind = soundFileKind(path, {head, static_cast<std::size_t>(got)});
    if (kind == SoundFileKind::unknown)
        return Failure{std::string("is no sound file that is known here") + kWanted};
    if (kind == SoundFileKind::mpeg4) return openAacSource(path);
    if (kind == SoundFileKind::raw) {
        const auto sound = checkLayout(raw.sampleRate, raw.channels);
        if (!sound) return Failure{sound.message()};
    }
    return openSndfileSource(descriptor, kind, raw);
}

/// Opens the file with every check that needs no samples. Like all above, a failure's reason does
/// not name the file.
Result<OpenedSource> openSource(const std::filesystem::path& path, const RawSoundFormat& raw) {
    std::uint64_t bytes = 0;
    auto descriptor = openRegular(path, bytes);
    if (!descriptor) return Failure{descriptor.message()};
    auto source = openKind(path, descriptor.value().get(), raw);
    if (!source) return Failure{source.message()};
    const SoundFileInfo& info = source.value()->info();
    const auto sound = checkLayout(info.sampleRate, info.channels);
    if (!sound) return Failure{sound.message()};
    return OpenedSource{std::move(descriptor.value()), std::move(source.value()), bytes};
}

/// Appends the mean of the channels. The sum is exact enough in double that no finite channels make
/// an infinite mean. Answers the number of frames before the first sample that is not finite.
std::uint32_t appendMono(const float* interleaved, std::uint32_t frames, std::uint32_t channels,
                         std::vector<float>& mono) {
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        double sum = 0.0;
        for (std::uint32_t channel = 0; channel < channels; ++channel) sum += *interleaved++;
        if (!std::isfinite(sum)) return frame;
        mono.push_back(static_cast<float>(sum / channels));
    }
    return frames;
}

class MonoReader {
public:
    MonoReader(OpenedSource& opened, const SoundFileOptions& options)
        : source_(*opened.source), options_(options),
          limit_(std::min(options.maxFrames, kMaxSoundFileFrames)),
          claimed_(source_.info().frames) {
        // A claim is believed as far as the file's size makes it cheap; beyond that memory follows
        // what is really there.
        samples_.reserve(std::min({claimed_, opened.fileBytes, limit_}));
    }

    Result<std::vector<float>> readAll() {
        const std::uint32_t channels = source_.info().channels;
        const std::uint32_t blockFrames = std::max(kBlockFloats / channels, 1u);
        std::vector<float> block(std::size_t{blockFrames} * channels);
        for (;;) {
            const auto got = source_.read(block.data(), blockFrames);
            if (!got) return Failure{got.message()};
            if (got.value() == 0) break;
            if (samples_.size() + got.value() > limit_) return tooLong();
            if (appendMono(block.data(), got.value(), channels, samples_) < got.value())
                return Failure{"holds a sample that is infinite or not a number at frame " +
                               std::to_string(samples_.size()) + "; finite samples are needed"};
            if (options_.onBlock) options_.onBlock(source_.info(), block.data(), got.value());
            if (!report(share())) return Failure{"was not read to its end: cancelled"};
        }
        if (samples_.empty()) return Failure{"holds no sound; at least one frame is needed"};
        samples_.shrink_to_fit(); // it stays in memory for as long as it is played
        if (!report(1.0)) return Failure{"was not read to its end: cancelled"};
        return std::move(samples_);
    }

private:
    Failure tooLong() const {
        return Failure{"is longer than " + std::to_string(limit_) +
                       " frames; cut it into shorter files"};
    }

    /// An unknown or exceeded claim shows as not yet begun or nearly done.
    double share() const {
        if (claimed_ == 0) return 0.0;
        return std::min(static_cast<double>(samples_.size()) / static_cast<double>(claimed_), 1.0);
    }

    bool report(double done) const { return !options_.progress || options_.progress(done); }

    SoundFileSource& source_;
    const SoundFileOptions& options_;
    const std::uint64_t limit_;
    const std::uint64_t claimed_;
    std::vector<float> samples_;
};

} // namespace

Result<SoundFile> readSoundFile(const std::filesystem::path& path,
                                const SoundFileOptions& options) try {
    auto opened = openSource(path, options.raw);
    if (!opened) return failure(path, opened.message());
    auto samples = MonoReader(opened.value(), options).readAll();
    if (!samples) return failure(path, samples.message());
    SoundFile file{opened.value().source->info(), std::move(samples.value())};
    file.info.frames = file.samples.size();
    return file;
} catch (const std::bad_alloc&) {
    return failure(path, "needs more memory than there is; cut it into shorter files");
}

Result<SoundFileInfo> readSoundFileInfo(const std::filesystem::path& path,
                                        const RawSoundFormat& raw) try {
    const auto opened = openSource(path, raw);
    if (!opened) return failure(path, opened.message());
    return opened.value().source->info();
} catch (const std::bad_alloc&) {
    return failure(path, "needs more memory than there is; cut it into shorter files");
}

} // namespace zephyra

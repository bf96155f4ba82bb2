// Opens sound files of all kinds, with every check, and reads them into one mono signal.

#include "platform/sound/sound_file.h"

#include "platform/sound/sound_file_source.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>
#include <span>
#include <system_error>
#include <utility>
#include <variant>

namespace zephyra {
namespace {

/// Floats decoded at a time: large enough to make calls cheap, small enough for prompt cancelling.
constexpr std::uint32_t kBlockFloats = 65536;

constexpr const char* kWanted = "; a raw, wav, aif, aiff, aifc, caf, mp3, m4a, flac or ogg file is "
                                "needed";

constexpr const char* kTooLarge = "needs more memory than there is; cut it into shorter files";

/// "NAME reason" on one line whatever bytes the name has.
Failure failure(const std::filesystem::path& path, const std::string& reason) {
    return Failure{shownFile(path) + " " + reason};
}

std::string cannotBeOpened(std::error_code error) {
    if (error == std::errc::no_such_file_or_directory) return "does not exist; check the name";
    return "cannot be opened: " + error.message() + kWanted;
}

/// Like all below, a failure's reason does not name the file.
Failure notOpened(const NotOpened& problem) {
    using enum NotOpened::Why;
    if (problem.why == folder) return {std::string("is a folder") + kWanted};
    if (problem.why == special) return {std::string("is no regular file") + kWanted};
    return {cannotBeOpened(problem.error)};
}

Result<FileBytes> openBytes(const std::filesystem::path& path, const StreamedFiles& streams) {
    auto opened = streams.open(path);
    if (const auto* const problem = std::get_if<NotOpened>(&opened)) return notOpened(*problem);
    auto& file = std::get<FileBytes>(opened);
    if (file.size() == 0) return Failure{std::string("is empty") + kWanted};
    return std::move(file);
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

SoundFileSourceResult openKind(const FileBytes& file, const RawSoundFormat& raw) {
    char head[kSoundHeadBytes];
    std::error_code error;
    const std::size_t got = file.readAt(0, std::as_writable_bytes(std::span(head)), error);
    if (error) return Failure{cannotBeOpened(error)};
    const auto kind = soundFileKind(file.name(), {head, got});
    if (kind == SoundFileKind::unknown)
        return Failure{std::string("is no sound file that is known here") + kWanted};
    if (kind == SoundFileKind::mpeg4) return openAacSource(file.path());
    if (kind == SoundFileKind::raw) {
        const auto sound = checkLayout(raw.sampleRate, raw.channels);
        if (!sound) return Failure{sound.message()};
    }
    return openSndfileSource(file, kind, raw);
}

/// Begins the file, which must outlive the source, with every check that needs no samples.
SoundFileSourceResult openSource(const FileBytes& file, const RawSoundFormat& raw) {
    auto source = openKind(file, raw);
    if (!source) return source;
    const SoundFileInfo& info = source.value()->info();
    const auto sound = checkLayout(info.sampleRate, info.channels);
    if (!sound) return Failure{sound.message()};
    return source;
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
    MonoReader(SoundFileSource& source, std::uint64_t fileBytes, const SoundFileOptions& options)
        : source_(source), options_(options),
          limit_(std::min(options.maxFrames, kMaxSoundFileFrames)),
          claimed_(source_.info().frames) {
        // A claim is believed as far as the file's size makes it cheap; beyond that memory follows
        // what is really there.
        samples_.reserve(std::min({claimed_, fileBytes, limit_}));
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

Result<FileBytes> openSoundFile(const std::filesystem::path& path, const StreamedFiles& streams) {
    auto file = openBytes(path, streams);
    if (!file) return failure(inputTitle(path), file.message());
    return file;
}

bool beginsLikeSound(const std::filesystem::path& name, std::span<const std::byte> head) {
    return soundFileKind(name, {reinterpret_cast<const char*>(head.data()),
                                std::min(head.size(), kSoundHeadBytes)}) != SoundFileKind::unknown;
}

Result<SoundFile> readSoundFile(FileBytes& file, const SoundFileOptions& options) try {
    if (const std::error_code error = file.load(); error && error != std::errc::not_enough_memory)
        return failure(file.name(), "cannot be read: " + error.message() + "; check the disk");
    const auto source = openSource(file, options.raw);
    if (!source) return failure(file.name(), source.message());
    auto samples = MonoReader(*source.value(), file.size(), options).readAll();
    if (!samples) return failure(file.name(), samples.message());
    SoundFile sound{source.value()->info(), std::move(samples.value())};
    sound.info.frames = sound.samples.size();
    return sound;
} catch (const std::bad_alloc&) {
    return failure(file.name(), kTooLarge);
}

Result<SoundFile> readSoundFile(const std::filesystem::path& path,
                                const SoundFileOptions& options) {
    auto file = openSoundFile(path);
    if (!file) return Failure{file.message()};
    return readSoundFile(file.value(), options);
}

Result<SoundFileInfo> readSoundFileInfo(const std::filesystem::path& path,
                                        const RawSoundFormat& raw) {
    const auto file = openSoundFile(path);
    if (!file) return Failure{file.message()};
    return readSoundFileInfo(file.value(), raw);
}

Result<SoundFileInfo> readSoundFileInfo(const FileBytes& file, const RawSoundFormat& raw) try {
    const auto source = openSource(file, raw);
    if (!source) return failure(file.name(), source.message());
    return source.value()->info();
} catch (const std::bad_alloc&) {
    return failure(file.name(), kTooLarge);
}

} // namespace zephyra

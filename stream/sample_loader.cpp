#include "stream/sample_loader.h"

#include "platform/content_hash.h"
#include "platform/log.h"
#include "platform/sound_file.h"
#include "stream/sample_search.h"
#include "stream/warning.h"

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

namespace zephyra {

namespace {

/// Below shared, with generic separators; empty elsewhere.
std::string pathBelow(const std::filesystem::path& path, const std::filesystem::path& shared) {
    const auto relative = path.lexically_normal().lexically_relative(shared.lexically_normal());
    if (shared.empty() || relative.empty() || *relative.begin() == ".." || relative == ".")
        return {};
    return relative.generic_string();
}

bool isMissing(const std::filesystem::path& path) {
    std::error_code error;
    return !std::filesystem::exists(path, error) && !error;
}

} // namespace

Result<LoadedSample> readSample(const std::filesystem::path& path,
                                const std::filesystem::path& shared,
                                const std::function<bool(double)>& progress) {
    Result<SoundFile> read = readSoundFile(path, {.progress = progress});
    if (!read) return Failure{read.message()};
    const SoundFile& file = read.value();
    Result<std::string> hash =
        contentHashOfFile(path, [&progress] { return !progress || progress(1.0); });
    if (!hash) return Failure{hash.message()};
    try {
        LoadedSample loaded{std::make_shared<mokSample>(), {}};
        if (!loaded.sound->allocate(file.samples.size(), static_cast<float>(file.info.sampleRate)))
            throw std::bad_alloc();
        std::copy(file.samples.begin(), file.samples.end(), loaded.sound->getPtr());
        loaded.sound->writeGuardPoint();
        loaded.reference = {.path = path.string(),
                            .relativePath = pathBelow(path, shared),
                            .contentHash = hash.value(),
                            .sampleRate = file.info.sampleRate,
                            .format = file.info.format,
                            .frames = file.info.frames,
                            .channels = file.info.channels};
        return loaded;
    } catch (const std::bad_alloc&) {
        return Failure{path.string() + " does not fit into the memory that is free; " +
                       "free some, or take a shorter sound"};
    }
}

SampleLoader::SampleLoader(Instance& instance, MOK_SCRUB_GRANULATOR& stream)
    : instance_(instance), stream_(stream), progress_(std::make_shared<Relaxed<double>>(0.0)),
      worker_(instance.runLoop) {}

void SampleLoader::loadSamplePerform(const std::filesystem::path& path, Ended ended) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    start([file = error ? path : absolute](const auto&) { return file; }, SoundUse::play,
          std::move(ended));
}

void SampleLoader::loadReference(const SampleReference& reference, SoundUse use, Ended ended) {
    stream_.setSampleReference(reference);
    start(
        [reference, folders = instance_.folders](const Worker::Cancelled& cancelled) {
            return findSample(reference, folders, [&cancelled] { return !cancelled; });
        },
        use, std::move(ended));
}

void SampleLoader::start(Find find, SoundUse use, Ended ended) {
    ++requests_;
    const std::uint64_t liveStarts = stream_.liveStarts();
    auto answer = [this, use, liveStarts, ended = std::move(ended)](Result<LoadedSample>& loaded) {
        // Whoever switched LIVE on while the file was read wants to go on hearing it.
        const bool wentLive = stream_.isLive() && stream_.liveStarts() != liveStarts;
        const SoundUse now = wentLive ? SoundUse::await : use;
        bool taken = false;
        if (!loaded)
            presentWarning(instance_, loaded.message());
        else if (LoadedSample& sample = loaded.value();
                 !(taken = stream_.loadSound(std::move(sample.sound), sample.reference, now)))
            presentWarning(instance_, sample.reference.path +
                                          " cannot be played: it needs a rate above 0 Hz, "
                                          "samples up to 4294967296 times full scale, "
                                          "and free memory for a scaled copy");
        if (ended) ended(taken);
    };
    *progress_ = 0.0;
    worker_.start([find = std::move(find), shared = instance_.folders.shared, progress = progress_,
                   answer = std::move(answer)](const Worker::Cancelled& cancelled) {
        *progress = 0.0; // a job that was cancelled may have set it since
        const std::filesystem::path path = find(cancelled);
        if (isMissing(path)) logLine("Warning, no file exist at path: " + path.string() + "!");
        auto loaded = std::make_shared<Result<LoadedSample>>(
            readSample(path, shared, [&cancelled, &progress](double share) {
                if (cancelled) return false;
                *progress = share;
                return true;
            }));
        return RunLoop::Task([answer, loaded] { answer(*loaded); });
    });
}

void SampleLoader::cancel() {
    worker_.cancel();
}

} // namespace zephyra

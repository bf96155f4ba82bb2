#include "stream/sample_loader.h"

#include "platform/text/log.h"
#include "stream/embedded_sample.h"

#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

SampleLoader::SampleLoader(Instance& instance, MOK_SCRUB_GRANULATOR& stream)
    : instance_(instance), stream_(stream), progress_(std::make_shared<Relaxed<double>>(0.0)),
      worker_(instance.runLoop, instance.log) {}

void SampleLoader::loadSamplePerform(const std::filesystem::path& path, Ended ended) {
    readFile(path, {}, std::move(ended));
}

void SampleLoader::loadReference(const SampleReference& reference, SoundUse use, Ended ended) {
    const LoadedSample atHand = loadedBefore();
    stream_.setSampleReference(reference);
    missing_.reset();
    start(
        reference.path,
        [reference, atHand, folders = instance_.folders,
         files = instance_.fileFacts](const auto& progress) {
            return readReferencedSample(reference, folders, *files, progress, atHand);
        },
        {.use = use, .named = reference}, std::move(ended));
}

/// What the stream was given last, as long as it has that: a state names its sound before the sound
/// is there.
LoadedSample SampleLoader::loadedBefore() {
    const auto sound = stream_.waveForm().fileSound();
    if (stream_.sampleReference().frames > 0) {
        lastSound_ = sound;
        lastReference_ = stream_.sampleReference();
    }
    return lastSound_.lock() == sound ? LoadedSample{sound, lastReference_} : LoadedSample();
}

void SampleLoader::readFile(const std::filesystem::path& path, Order order, Ended ended) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    // What a newer program wrote beside the name of a file that is located now.
    auto unknown = order.named ? order.named->unknown : PropertyDictionary();
    start(
        path,
        [path = error ? path : absolute, unknown = std::move(unknown),
         shared = instance_.folders.shared, files = instance_.fileFacts](const auto& progress) {
            FoundSound found{readSample(path, shared, *files, progress),
                             {.asked = path, .file = path}};
            if (!found.loaded) return found;
            found.loaded.value().reference.unknown = unknown;
            found.report.road = SampleRoad::path;
            return found;
        },
        std::move(order), std::move(ended));
}

void SampleLoader::start(const std::filesystem::path& asked, Read read, Order order, Ended ended) {
    const SampleReport superseded{.asked = std::exchange(asked_, asked),
                                  .end = SampleEnd::superseded};
    const Ended before = std::exchange(ended_, std::move(ended));
    ++requests_;
    takesOver_ = order.named && order.use == SoundUse::play;
    order.liveStarts = stream_.liveStarts();
    order.peak = stream_.normalizePeak();
    *progress_ = 0.0;
    worker_.start([this, read = std::move(read), order = std::move(order), progress = progress_,
                   resources = instance_.folders.resources, files = instance_.fileFacts,
                   seconds = embedSeconds(instance_.defaults)](const Worker::Cancelled& cancelled) {
        *progress = 0.0; // a job that was cancelled may have set it since
        auto found = std::make_shared<FoundSound>(read([&cancelled, &progress](double share) {
            if (cancelled) return false;
            *progress = share;
            return true;
        }));
        if (found->loaded && !cancelled) {
            auto& [sound, reference] = found->loaded.value();
            found->playable = playableSound(sound, order.peak);
            if (!reference.embedded && isEmbeddable(*sound, seconds)) {
                auto [embedded, problem] = embedSample(*sound, reference, resources, *files);
                reference.embedded = std::move(embedded);
                found->report.notEmbedded = std::move(problem);
            }
        }
        return RunLoop::Task([this, order, found] { finish(order, *found); });
    });
    if (before) before(superseded); // last: it may start another load, which supersedes this one
}

void SampleLoader::finish(const Order& order, FoundSound& found) {
    auto& [loaded, report, playable] = found;
    report.problem = loaded ? take(order, found) : loaded.message();
    report.end = report.problem.empty() ? SampleEnd::taken : SampleEnd::missing;
    if (report.problem.empty())
        missing_.reset();
    else
        tell(order, report.problem);
    end(report);
}

/// To whoever waits for the load that runs, who may start another; else to the log.
void SampleLoader::end(const SampleReport& report) {
    if (const Ended ended = std::exchange(ended_, {})) return ended(report);
    for (const std::string& line : linesOf(report)) instance_.log.write(line);
}

/// What is wrong with the sound; empty when the stream has it.
std::string SampleLoader::take(const Order& order, FoundSound& found) {
    const SampleReference& reference = found.loaded.value().reference;
    if (!found.playable)
        return reference.path + " cannot be played: it needs a rate above 0 Hz, samples up to "
                                "4294967296 times full scale, and free memory for a scaled copy";
    // Whoever switched LIVE on while the file was read wants to go on hearing it.
    const bool wentLive = stream_.isLive() && stream_.liveStarts() != order.liveStarts;
    const SoundUse use = wentLive ? SoundUse::await : order.use;
    stream_.takeSound(std::move(*found.playable), reference, use);
    return {};
}

void SampleLoader::tell(const Order& order, const std::string& problem) {
    if (!order.named) return presentWarning(instance_.alerts, problem);
    missing_ = order;
    const auto chosen = [this, alive = std::weak_ptr(alive_),
                         path = order.named->path](const std::string&) {
        if (!alive.expired()) locate(path);
    };
    instance_.alerts.present(
        {.title = "Warning", .message = problem, .actions = {{"Locate", chosen}, {"Ok"}}});
}

/// Not so while another sound is being read, or once one has come. By the path alone, which is all
/// that the alert says: a second one about the same path, with other content, is not shown.
bool SampleLoader::isStillMissing(const std::string& path) const {
    const SampleReference& reference = stream_.sampleReference();
    return missing_ && !isLoading() && missing_->named->path == path && reference.path == path &&
           reference.frames == 0;
}

void SampleLoader::locate(const std::string& path) {
    if (!isStillMissing(path)) return;
    instance_.documents.present(
        {.kind = DocumentRequest::Kind::importCopies,
         .types = {"public.audio"},
         .picked = [this, alive = std::weak_ptr(alive_), path](const auto& files) {
             if (alive.expired() || files.empty() || !isStillMissing(path)) return;
             readFile(files.front(), *missing_);
         }});
}

std::string SampleLoader::missing() const {
    return missing_ && isStillMissing(missing_->named->path) ? missing_->named->path
                                                             : std::string();
}

void SampleLoader::locateMissing(const std::filesystem::path& file) {
    if (!missing().empty()) readFile(file, *missing_);
}

void SampleLoader::cancel() {
    worker_.cancel();
    end({.asked = asked_, .end = SampleEnd::superseded});
}

} // namespace zephyra

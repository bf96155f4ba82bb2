#include "stream/sample_loader.h"

#include "stream/embedded_sample.h"
#include "stream/warning.h"

#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

SampleLoader::SampleLoader(Instance& instance, MOK_SCRUB_GRANULATOR& stream)
    : instance_(instance), stream_(stream), progress_(std::make_shared<Relaxed<double>>(0.0)),
      worker_(instance.runLoop, instance.log) {}

void SampleLoader::loadSamplePerform(const std::filesystem::path& path, Ended ended) {
    readFile(path, {.use = SoundUse::play, .ended = std::move(ended)});
}

void SampleLoader::loadReference(const SampleReference& reference, SoundUse use, Ended ended) {
    stream_.setSampleReference(reference);
    start(
        [reference, folders = instance_.folders, &log = instance_.log](const auto& progress) {
            return readReferencedSample(reference, folders, log, progress);
        },
        {.use = use, .ended = std::move(ended), .named = reference});
}

void SampleLoader::readFile(const std::filesystem::path& path, Order order) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    // What a newer program wrote beside the name of a file that is located now.
    auto unknown = order.named ? order.named->unknown : PropertyDictionary();
    start(
        [path = error ? path : absolute, unknown = std::move(unknown),
         shared = instance_.folders.shared](const auto& progress) {
            Result<LoadedSample> loaded = readSample(path, shared, progress);
            if (loaded) loaded.value().reference.unknown = unknown;
            return loaded;
        },
        std::move(order));
}

void SampleLoader::start(Read read, Order order) {
    ++requests_;
    missing_.reset();
    order.liveStarts = stream_.liveStarts();
    *progress_ = 0.0;
    worker_.start([this, read = std::move(read), order = std::move(order), progress = progress_,
                   resources = instance_.folders.resources,
                   seconds = embedSeconds(instance_.defaults)](const Worker::Cancelled& cancelled) {
        *progress = 0.0; // a job that was cancelled may have set it since
        auto loaded =
            std::make_shared<Result<LoadedSample>>(read([&cancelled, &progress](double share) {
                if (cancelled) return false;
                *progress = share;
                return true;
            }));
        if (*loaded && !cancelled) {
            auto& [sound, reference] = loaded->value();
            if (!reference.embedded && isEmbeddable(*sound, seconds))
                reference.embedded = embedSample(*sound, reference, resources, instance_.log);
        }
        return RunLoop::Task([this, order, loaded] { finish(order, *loaded); });
    });
}

void SampleLoader::finish(const Order& order, Result<LoadedSample>& loaded) {
    const std::string problem = loaded ? take(order, loaded.value()) : loaded.message();
    if (!problem.empty()) tell(order, problem);
    if (order.ended) order.ended(problem.empty());
}

/// What is wrong with the sound; empty when the stream has it.
std::string SampleLoader::take(const Order& order, LoadedSample& sample) {
    // Whoever switched LIVE on while the file was read wants to go on hearing it.
    const bool wentLive = stream_.isLive() && stream_.liveStarts() != order.liveStarts;
    const SoundUse use = wentLive ? SoundUse::await : order.use;
    if (stream_.loadSound(std::move(sample.sound), sample.reference, use)) return {};
    return sample.reference.path + " cannot be played: it needs a rate above 0 Hz, samples up to "
                                   "4294967296 times full scale, and free memory for a scaled copy";
}

void SampleLoader::tell(const Order& order, const std::string& problem) {
    if (!order.named) return presentWarning(instance_, problem);
    missing_ = order;
    missing_->ended = {}; // it hears of this end only
    const auto chosen = [this, alive = std::weak_ptr(alive_),
                         path = order.named->path](const std::string&) {
        if (!alive.expired()) locate(path);
    };
    instance_.alerts.present(
        {.title = "Warning", .message = problem, .actions = {{"Locate", chosen}, {"Ok"}}});
}

/// Not so once another sound was asked for, or has come. By the path alone, which is all that the
/// alert says: a second one about the same path, with other content, is not shown.
bool SampleLoader::isStillMissing(const std::string& path) const {
    const SampleReference& reference = stream_.sampleReference();
    return missing_ && missing_->named->path == path && reference.path == path &&
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

void SampleLoader::cancel() {
    missing_.reset();
    worker_.cancel();
}

} // namespace zephyra

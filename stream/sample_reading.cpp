#include "stream/sample_reading.h"

#include "platform/files/content_hash.h"
#include "platform/sound/sound_file.h"
#include "platform/text/one_line.h"
#include "stream/embedded_sample.h"
#include "stream/sample_search.h"

#include <algorithm>
#include <new>
#include <utility>

namespace zephyra {

namespace {

Failure isMissing(const SampleReference& reference) {
    return {onOneLine(reference.path) +
            " is missing; a file of that name, or one with its content in "
            "the shared folder, is needed"};
}

/// A file that is there for the reference.
Result<LoadedSample> readFound(const SampleReference& reference, const std::filesystem::path& path,
                               const Folders& folders,
                               const std::function<bool(double)>& progress) {
    Result<LoadedSample> loaded = readSample(path, folders.shared, progress);
    if (loaded) loaded.value().reference.unknown = reference.unknown;
    return loaded;
}

/// Null when there is no copy or, after a finding, none that can be played.
std::shared_ptr<mokSample> soundOf(const SampleReference& reference, StateFindings& findings) {
    if (!reference.embedded || reference.embedded->audio.empty()) return nullptr;
    return embeddedSound(*reference.embedded, onOneLine(reference.path), findings);
}

LoadedSample fromState(SampleReference reference, std::shared_ptr<mokSample> sound) {
    reference.format = "kept in the state";
    reference.frames = sound->size;
    reference.channels = 1;
    return {std::move(sound), std::move(reference)};
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
        return Failure{onOneLine(path.string()) + " does not fit into the memory that is free; " +
                       "free some, or take a shorter sound"};
    }
}

FoundSound readReferencedSample(const SampleReference& reference, const Folders& folders,
                                const std::function<bool(double)>& progress) {
    const auto wanted = [&progress] { return !progress || progress(0.0); };
    const FoundSample found = findSample(reference, folders, wanted);
    FoundSound sound{isMissing(reference), {.asked = reference.path, .file = found.path}};
    SampleReport& report = sound.report;
    const auto read = [&] {
        sound.loaded = readFound(reference, found.path, folders, progress);
        if (sound.loaded) report.road = found.road;
    };
    if (found.hasContent) read();
    if (sound.loaded || !wanted()) return sound;
    if (auto copy = soundOf(reference, report.findings)) {
        report.road = SampleRoad::embedded;
        sound.loaded = fromState(reference, std::move(copy));
        return sound;
    }
    report.isOtherSound = !found.hasContent && !found.path.empty();
    if (report.isOtherSound) read();
    return sound;
}

} // namespace zephyra

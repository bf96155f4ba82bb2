#include "stream/sample_reading.h"

#include "platform/sound/sound_file.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
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

Failure isDamaged(const SampleReference& reference) {
    return {"the copy of " + onOneLine(reference.path) +
            " that goes along is damaged; that file, or one with its content in the shared folder, "
            "is needed"};
}

/// Whether atHand may be what the file at path holds, which its hash tells.
bool isOf(const LoadedSample& atHand, const std::filesystem::path& path) {
    const SampleReference& reference = atHand.reference;
    if (!atHand.sound || reference.frames == 0 || reference.path != path.string()) return false;
    if (reference.embedded && reference.embedded->isOnlyCopy) return false; // it came from a state
    return static_cast<float>(reference.sampleRate) == atHand.sound->sampleRate;
}

LoadedSample again(LoadedSample atHand, const std::filesystem::path& shared) {
    atHand.reference.relativePath = pathBelow(atHand.reference.path, shared);
    atHand.reference.unknown.clear();
    // Nothing went along with it, for a reason that is to be told again.
    if (atHand.reference.embedded && atHand.reference.embedded->audio.empty())
        atHand.reference.embedded = nullptr;
    return atHand;
}

LoadedSample sampleOf(const SoundFile& file, const std::filesystem::path& path,
                      const std::filesystem::path& shared, std::string hash) {
    auto sound = std::make_shared<mokSample>();
    if (!sound->allocate(file.samples.size(), static_cast<float>(file.info.sampleRate)))
        throw std::bad_alloc();
    std::copy(file.samples.begin(), file.samples.end(), sound->getPtr());
    sound->writeGuardPoint();
    return {std::move(sound),
            {.path = path.string(),
             .relativePath = pathBelow(path, shared),
             .contentHash = std::move(hash),
             .sampleRate = file.info.sampleRate,
             .format = file.info.format,
             .frames = file.info.frames,
             .channels = file.info.channels}};
}

Result<LoadedSample> readOpen(FileBytes& file, const std::filesystem::path& shared,
                              FileFacts& files, const std::function<bool(double)>& progress,
                              const LoadedSample& atHand) {
    if (isOf(atHand, file.path())) {
        static_cast<void>(file.load()); // to be hashed and, if it is another sound, decoded
        const auto now =
            files.contentHash(file, [&progress] { return !progress || progress(0.0); });
        if (now && now.value() == atHand.reference.contentHash) return again(atHand, shared);
    }
    return readSample(file, shared, files, {.progress = progress});
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

Result<LoadedSample> readSample(FileBytes& file, const std::filesystem::path& shared,
                                FileFacts& files, const SoundFileOptions& reading) {
    const Result<SoundFile> read = readSoundFile(file, reading);
    if (!read) return Failure{read.message()};
    Result<std::string> hashed = files.contentHash(
        file, [&progress = reading.progress] { return !progress || progress(1.0); });
    if (!hashed) return Failure{hashed.message()};
    try {
        return sampleOf(read.value(), file.path(), shared, std::move(hashed.value()));
    } catch (const std::bad_alloc&) {
        return Failure{shownFile(file.name()) +
                       " does not fit into the memory that is free; free some, or take a shorter "
                       "sound"};
    }
}

Result<LoadedSample> readSample(const std::filesystem::path& path,
                                const std::filesystem::path& shared, FileFacts& files,
                                const std::function<bool(double)>& progress,
                                const LoadedSample& atHand) {
    if (isOf(atHand, path) && files.knownHash(path) == atHand.reference.contentHash)
        return again(atHand, shared);
    auto file = openSoundFile(path);
    if (!file) return Failure{file.message()};
    return readOpen(file.value(), shared, files, progress, atHand);
}

FoundSound readReferencedSample(const SampleReference& reference, const Folders& folders,
                                FileFacts& files, const std::function<bool(double)>& progress,
                                const LoadedSample& atHand) {
    const auto wanted = [&progress] { return !progress || progress(0.0); };
    FoundSample found = findSample(reference, folders, files, wanted);
    FoundSound sound{isMissing(reference), {.asked = reference.path, .file = found.path}};
    SampleReport& report = sound.report;
    const auto read = [&] {
        sound.loaded = found.bytes
                           ? readOpen(*found.bytes, folders.shared, files, progress, atHand)
                           : readSample(found.path, folders.shared, files, progress, atHand);
        if (!sound.loaded) return;
        sound.loaded.value().reference.unknown = reference.unknown;
        report.road = found.road;
    };
    if (found.hasContent) read();
    if (sound.loaded || !wanted()) return sound;
    if (auto copy = soundOf(reference, report.findings)) {
        report.road = SampleRoad::embedded;
        sound.loaded = fromState(reference, std::move(copy));
        return sound;
    }
    if (!report.findings.empty()) sound.loaded = isDamaged(reference);
    report.isOtherSound = !found.hasContent && !found.path.empty();
    if (report.isOtherSound) read();
    return sound;
}

} // namespace zephyra

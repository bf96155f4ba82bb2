#include "stream/sound_keeping.h"

#include "platform/files/content_hash.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_name.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/audio_file_float_wav.h"
#include "platform/sound/sound_file.h"
#include "stream/sample_search.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr const char* kCaptureName = "Rec";
constexpr std::size_t kMostNumberBytes = 32; ///< room in a name for what makes it a free one

Result<void> writeFrames(const fs::path& path, const mokSample& sound, std::uint64_t frames) {
    FloatWavWriter writer;
    Result<void> done = writer.open(path, double{sound.sampleRate}, 1);
    const float* const channel = sound.getPtr();
    if (done) done = writer.write(&channel, static_cast<std::uint32_t>(frames));
    return done ? writer.close() : done;
}

/// The reference of the file that was just written.
Result<SampleReference> referenceTo(const fs::path& path, const fs::path& shared) {
    auto file = openSoundFile(path);
    if (!file) return Failure{file.message()};
    static_cast<void>(file.value().load()); // what cannot be loaded is read piece by piece
    const auto info = readSoundFileInfo(file.value());
    if (!info) return Failure{info.message()};
    const auto hash = contentHash(file.value());
    if (!hash) return Failure{hash.message()};
    return SampleReference{.path = path.string(),
                           .relativePath = pathBelow(path, shared),
                           .contentHash = hash.value(),
                           .sampleRate = info.value().sampleRate,
                           .format = info.value().format,
                           .frames = info.value().frames,
                           .channels = info.value().channels};
}

Result<SampleReference> writeSound(const mokSample& sound, std::uint64_t frames,
                                   const fs::path& shared, const std::string& base,
                                   FirstName first) {
    if (shared.empty()) return Failure{base + ".wav cannot be kept: no shared folder is named"};
    const Result<fs::path> path = reserveName(shared, base, first);
    if (!path) return Failure{path.message()};
    const Result<void> written = writeFrames(path.value(), sound, frames);
    Result<SampleReference> reference =
        written ? referenceTo(path.value(), shared) : Failure{written.message()};
    if (!reference) static_cast<void>(file_calls::remove(path.value()));
    return reference;
}

/// Of the lost file, which another machine may have named in any way.
std::string baseName(const SampleReference& lost) {
    const std::string stem = fs::path(lost.path).stem().string();
    const bool isGood = isFileName(stem) && stem.front() != '.' &&
                        stem.size() + kMostNumberBytes <= kMostFileNameBytes;
    return isGood ? stem : "Sample";
}

Result<void> keepOnlyCopy(const fs::path& shared, MOK_SCRUB_GRANULATOR& stream) {
    const SampleReference& lost = stream.sampleReference();
    const auto sound = stream.waveForm().fileSound();
    auto kept = writeSound(*sound, std::min(sound->size, lost.frames), shared, baseName(lost),
                           FirstName::plain);
    if (!kept) return Failure{kept.message()};
    auto embedded = std::make_shared<EmbeddedSample>(*lost.embedded);
    embedded->isOnlyCopy = false;
    kept.value().embedded = std::move(embedded);
    kept.value().unknown = lost.unknown;
    stream.nameSound(std::move(kept.value()));
    return {};
}

/// The live buffer from its oldest frame on, which is what positions in it count from.
std::shared_ptr<mokSample> capturedSound(const WaveForm& waveForm) {
    const LiveSample& live = *waveForm.liveSample();
    auto sound = std::make_shared<mokSample>();
    if (!sound->allocate(live.size, live.sampleRate)) return nullptr;
    waveForm.copyLive(live.offset, {sound->getPtr(), static_cast<std::size_t>(sound->size)});
    sound->writeGuardPoint();
    return sound;
}

Result<void> keepCaptured(const fs::path& shared, MOK_SCRUB_GRANULATOR& stream) {
    const Failure noMemory{"no memory for a copy of what LIVE heard; free some"};
    auto sound = capturedSound(stream.waveForm());
    if (!sound) return noMemory;
    auto kept = writeSound(*sound, sound->size, shared, kCaptureName, FirstName::numbered);
    if (!kept) return Failure{kept.message()};
    const bool touched = stream.normalizeTouched();
    stream.setNormalizeTouched(false); // the input was scaled as it came in
    const fs::path path = kept.value().path;
    if (stream.loadSound(std::move(sound), std::move(kept.value()))) return {};
    stream.setNormalizeTouched(touched);
    static_cast<void>(file_calls::remove(path));
    return noMemory;
}

bool isOnlyCopyLoaded(const SampleReference& reference) {
    return reference.embedded && reference.embedded->isOnlyCopy && reference.frames > 0;
}

bool isCaptured(const MOK_SCRUB_GRANULATOR& stream) {
    return stream.waveForm().isLiveCurrent() && !stream.isLive() &&
           stream.waveForm().liveSample()->heard > 0;
}

} // namespace

Result<fs::path> reserveName(const fs::path& folder, const std::string& base, FirstName first) {
    if (const std::error_code error = file_calls::makeFolders(folder))
        return writeFailure(folder, audioFileStatus(error));
    fs::path path = folder / (base + ".wav"), last;
    std::error_code error = first == FirstName::plain
                                ? file_calls::makeFile(path)
                                : std::make_error_code(std::errc::file_exists);
    while (error == std::errc::file_exists) {
        path = folder / (getIncrementalNameFromDocumentsFolder(folder, base) + ".wav");
        if (path == last)
            return Failure{path.string() + " is the highest number there is; rename it"};
        error = file_calls::makeFile(path);
        last = path;
    }
    if (error) return writeFailure(path, audioFileStatus(error));
    return path;
}

Result<void> keepSoundAsFile(Instance& instance, MOK_SCRUB_GRANULATOR& stream) {
    const fs::path& shared = instance.folders.shared;
    const bool captured = isCaptured(stream), onlyCopy = isOnlyCopyLoaded(stream.sampleReference());
    Result<void> kept;
    if (onlyCopy) kept = keepOnlyCopy(shared, stream); // also one that waits behind the captured
    if (kept && captured) kept = keepCaptured(shared, stream);
    if (captured || onlyCopy) instance.sharedFolder.post(shared_folder_notice::kSamples);
    return kept;
}

} // namespace zephyra

#include "stream/sound_keeping.h"

#include "platform/files/content_hash.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_name.h"
#include "platform/sound/audio_file_error.h"
#include "platform/sound/float_file_writer.h"
#include "platform/sound/sound_file.h"
#include "stream/captured_state.h"
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
    FloatFileWriter writer;
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

/// The live sound from its oldest frame on, which is what positions in it count from.
std::shared_ptr<mokSample> capturedSound(const WaveForm& waveForm) {
    const LiveSample& live = *waveForm.liveSample();
    auto sound = std::make_shared<mokSample>();
    if (!sound->allocate(live.size, live.sampleRate)) return nullptr;
    waveForm.copyLive(live.offset, {sound->getPtr(), static_cast<std::size_t>(sound->size)});
    sound->writeGuardPoint();
    return sound;
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

SoundKeeping::SoundKeeping(MOK_SCRUB_GRANULATOR& stream)
    : shared_(stream.instance().folders.shared), lost_(stream.sampleReference()) {
    if (isOnlyCopyLoaded(lost_)) onlyCopy_.sound = stream.waveForm().fileSound();
    if (!isCaptured(stream)) return;
    isCaptured_ = true;
    heard_ = versionOf(stream);
    captured_.sound = capturedSound(stream.waveForm());
}

void SoundKeeping::write() {
    if (onlyCopy_.sound) // also one that waits behind the captured
        onlyCopy_.file = writeSound(*onlyCopy_.sound, std::min(onlyCopy_.sound->size, lost_.frames),
                                    shared_, baseName(lost_), FirstName::plain);
    if (!isCaptured_ || !onlyCopy_.file) return;
    const Failure noMemory{"no memory for a copy of what LIVE heard; free some"};
    playable_ = playableSound(captured_.sound, std::nullopt); // the input was scaled as it came in
    captured_.file = !playable_ ? Result<SampleReference>(noMemory)
                                : writeSound(*captured_.sound, captured_.sound->size, shared_,
                                             kCaptureName, FirstName::numbered);
}

Result<void> SoundKeeping::finish(MOK_SCRUB_GRANULATOR& stream) {
    if (isNeeded()) stream.instance().sharedFolder.post(shared_folder_notice::kSamples);
    if (!onlyCopy_.file) return Failure{onlyCopy_.file.message()};
    if (onlyCopy_.sound) nameOnlyCopy(stream);
    if (!captured_.file) return Failure{captured_.file.message()};
    if (isCaptured_) playCaptured(stream);
    return {};
}

void SoundKeeping::nameOnlyCopy(MOK_SCRUB_GRANULATOR& stream) {
    SampleReference& kept = onlyCopy_.file.value();
    if (stream.sampleReference() != lost_) return dropFile(kept);
    auto embedded = std::make_shared<EmbeddedSample>(*lost_.embedded);
    embedded->isOnlyCopy = false;
    kept.embedded = std::move(embedded);
    kept.unknown = lost_.unknown;
    stream.nameSound(std::move(kept));
}

void SoundKeeping::playCaptured(MOK_SCRUB_GRANULATOR& stream) {
    if (!isCaptured(stream) || versionOf(stream) != heard_) return dropFile(captured_.file.value());
    stream.setNormalizeTouched(false);
    stream.takeSound(std::move(*playable_), std::move(captured_.file.value()));
}

/// Another sound has come meanwhile, which nobody asked to be kept.
void SoundKeeping::dropFile(const SampleReference& kept) {
    static_cast<void>(file_calls::remove(kept.path));
}

Result<void> keepSoundAsFile(MOK_SCRUB_GRANULATOR& stream) {
    SoundKeeping keeping(stream);
    keeping.write();
    return keeping.finish(stream);
}

} // namespace zephyra

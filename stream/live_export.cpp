#include "stream/live_export.h"

#include "platform/files/file_calls.h"
#include "platform/sound/audio_file_error.h"
#include "stream/audio_file_writer.h"
#include "stream/sound_keeping.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

constexpr const char* kBaseName = "Rec";
constexpr std::uint32_t kBitsPerSample = 16;
constexpr std::size_t kFramesAtATime = 65536;

constexpr const char* kChoice = "'Save' will export the current Buffer as new WAV-file 16 bit mono "
                                "(Document Folder)";
constexpr const char* kCreating = "Problem when creating audio file:";
constexpr const char* kFormat = "Problem setting audio format:";
constexpr const char* kWriting = "Problem writing audio file:";

/// A sound to be written; RENDER has no part in it any more.
struct Take {
    std::vector<float> frames;
    double rate; // Hz
};

Failure problem(const char* step, const std::string& reason) {
    return {std::string(step) + " " + reason};
}

/// Whether opening failed over what the file is to hold, not over the file itself.
bool isAboutFormat(OSStatus code) {
    using namespace audio_file_error;
    return code == unsupportedFileType || code == unsupportedDataFormat || code == badParameter ||
           code == codecUnavailable;
}

Result<void> writeTake(const std::filesystem::path& path, Take& take, Log& log) {
    EAFWrite writer(log);
    const OSStatus opened = writer.openFileForWrite_sr_channels_wordLength_type(
        path, take.rate, 1, kBitsPerSample, audio_file_type::wave);
    if (opened != audio_file_error::none)
        return problem(isAboutFormat(opened) ? kFormat : kCreating,
                       writeFailure(path, opened).message);
    OSStatus status = audio_file_error::none;
    for (std::size_t at = 0; at < take.frames.size() && status == audio_file_error::none;) {
        const std::size_t count = std::min(kFramesAtATime, take.frames.size() - at);
        float* const channel = take.frames.data() + at;
        const std::uint32_t written =
            writer.writeFloats_fromArray(static_cast<std::uint32_t>(count), &channel);
        status = written == EAFWrite::kNothingWritten ? audio_file_error::outOfMemory
                                                      : static_cast<OSStatus>(written);
        at += count;
    }
    if (status == audio_file_error::none) status = writer.closeFile();
    if (status != audio_file_error::none)
        return problem(kWriting, writeFailure(path, status).message);
    return {};
}

/// Where it was written.
Result<std::filesystem::path> exportTake(const std::filesystem::path& folder, Take& take,
                                         Log& log) {
    Result<std::filesystem::path> path = reserveName(folder, kBaseName, FirstName::numbered);
    if (!path) return problem(kCreating, path.message());
    const Result<void> written = writeTake(path.value(), take, log);
    if (written) return path;
    static_cast<void>(file_calls::remove(path.value()));
    return Failure{written.message()};
}

/// The current sound as it plays; no frames when there is none yet. written: whether RENDER may be
/// writing it now.
Take currentSound(const WaveForm& waveForm, bool written) {
    const mokSample& sound = *waveForm.mSample();
    Take take{{}, double{sound.sampleRate}};
    if (waveForm.isLiveCurrent())
        take.frames = waveForm.heardFrames();
    else if (waveForm.hasFileSample())
        take.frames.assign(sound.getPtr(), sound.getPtr() + sound.size);
    // Where the oldest frames were, a block that came in meanwhile may stand now.
    if (written && take.frames.size() == sound.size)
        take.frames.erase(take.frames.begin(),
                          take.frames.begin() +
                              std::min<std::ptrdiff_t>(mokGranulatorSF::kMaxBlockFrames,
                                                       static_cast<std::ptrdiff_t>(sound.size)));
    return take;
}

} // namespace

LiveExport::LiveExport(Instance& instance, MOK_SCRUB_GRANULATOR& stream)
    : instance_(instance), stream_(stream), worker_(instance.runLoop, instance.log) {}

void LiveExport::saveData(Control*) {
    const auto action = [this](const char* title, std::function<void()> chosen) -> AlertAction {
        return {title, [alive = std::weak_ptr(alive_), chosen](const std::string&) {
                    if (alive.lock()) chosen();
                }};
    };
    instance_.alerts.present(
        {.title = "Save",
         .message = kChoice,
         .actions = {action("Save", [this] { save(); }),
                     action("Restore Last Sample", [this] { stream_.restoreLastSample(); }),
                     action("Clear", [this] { stream_.ui_liveClear(); }),
                     {"Cancel"}}});
}

void LiveExport::save() {
    if (isSaving())
        return instance_.log.write("the last save is still being written; save again after it");
    std::shared_ptr<Take> take;
    try {
        const bool written = stream_.isLive() && !stream_.waveForm().isHeld() &&
                             instance_.runLoop.clock() == RunLoop::Clock::wall;
        take = std::make_shared<Take>(currentSound(stream_.waveForm(), written));
    } catch (const std::bad_alloc&) {
        return presentWarning(instance_.alerts,
                              problem(kWriting, "no memory for a copy of the sound").message);
    }
    if (take->frames.empty())
        return presentWarning(
            instance_.alerts,
            problem(kWriting, "there is no sound yet; switch LIVE on and play, or load one")
                .message);
    worker_.start([this, take, folder = instance_.folders.shared,
                   &log = instance_.log](const Worker::Cancelled&) {
        return RunLoop::Task([this, saved = exportTake(folder, *take, log)] {
            if (!saved) return presentWarning(instance_.alerts, saved.message());
            lastSaved_ = saved.value();
            instance_.sharedFolder.post(shared_folder_notice::kSamples);
        });
    });
}

} // namespace zephyra

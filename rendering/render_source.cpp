#include "rendering/render_source.h"

#include "presets/preset_sound.h"
#include "rendering/file_clashes.h"
#include "rendering/only_copy.h"
#include "stream/sample_reading.h"

#include <algorithm>
#include <system_error>

namespace zephyra {

namespace {

SoundFileInfo infoOf(const SampleReference& reference) {
    return {.format = reference.format,
            .channels = reference.channels,
            .sampleRate = reference.sampleRate,
            .frames = reference.frames};
}

using Progress = std::function<bool(double share)>;

/// A saved state names the sample and is used from other folders, too.
std::filesystem::path absoluteName(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute;
}

Result<LoadedSample> readSampleFile(const std::filesystem::path& path, const StreamedFiles& streams,
                                    const Folders& folders, FileFacts& files,
                                    const Progress& progress, ChannelLevels& levels) {
    auto file = openSoundFile(isStream(path) ? path : absoluteName(path), streams);
    if (!file) return Failure{file.message()};
    SoundFileOptions reading;
    reading.progress = progress;
    reading.onBlock = [&levels](const SoundFileInfo& info, const float* block,
                                std::uint32_t frames) { levels.add(block, frames, info.channels); };
    return readSample(file.value(), folders.shared, files, reading);
}

/// The first two channels into the host's input.
Result<SoundFile> readInput(const RenderRequest& request, const Progress& progress,
                            RenderSource& source, ChannelLevels& levels) {
    auto file = openSoundFile(request.input, *request.streams);
    if (!file) return Failure{file.message()};
    SoundFileOptions reading;
    reading.progress = progress;
    reading.onBlock = [&](const SoundFileInfo& info, const float* block, std::uint32_t frames) {
        const std::size_t channels = info.channels;
        levels.add(block, frames, info.channels);
        for (std::size_t n = 0; n < frames; ++n) {
            source.inputLeft.push_back(block[n * channels]);
            source.inputRight.push_back(block[n * channels + (channels > 1 ? 1 : 0)]);
        }
    };
    return readSoundFile(file.value(), reading);
}

} // namespace

std::span<const float> ReadSource::shownSamples() const {
    if (!sample) return heard;
    return {sample->getPtr(), std::min<std::size_t>(sample->size, shown.frames)};
}

Result<ReadSource> readRenderSource(const RenderRequest& request, const Folders& folders,
                                    const std::shared_ptr<FileFacts>& files,
                                    const Progress& progress) {
    ReadSource read;
    const auto take = [&](std::shared_ptr<const mokSample> sample, SampleReference reference) {
        read.sample = read.source.sample = std::move(sample);
        read.source.reference = std::move(reference);
        read.shown = infoOf(read.source.reference);
        read.sampleFile = read.source.reference.path;
    };
    const auto takeSample = [&](const std::filesystem::path& path) -> Result<void> {
        auto loaded =
            readSampleFile(path, *request.streams, folders, *files, progress, read.sampleLevels);
        if (!loaded) return Failure{loaded.message()};
        if (isStream(path)) read.keeping = makeOnlyCopy(request, path, loaded.value(), *files);
        take(std::move(loaded.value().sound), std::move(loaded.value().reference));
        return {};
    };
    const auto takePresetSound = [&]() -> Result<void> {
        auto sound = findPresetSound(*request.preset, folders, files);
        if (!sound) return Failure{sound.message()};
        take(std::move(sound.value().sample), std::move(sound.value().reference));
        read.notice = otherSoundLine(sound.value().report); // the rest is told by who restores it
        return checkOverwriting(request, "the preset's sample", read.source.reference.path);
    };
    if (request.isInstrument()) {
        const auto taken = request.input.empty() ? takePresetSound() : takeSample(request.input);
        if (!taken) return Failure{taken.message()};
        read.input = read.shown;
        return read;
    }
    auto input = readInput(request, progress, read.source, read.inputLevels);
    if (!input) return Failure{input.message()};
    read.input = read.shown = input.value().info;
    if (request.host.sample) {
        if (const auto taken = takeSample(*request.host.sample); !taken)
            return Failure{"--sample: " + taken.message()};
    } else if (const auto& preset = request.preset;
               preset && preset->hasSound && !preset->live && !request.live) {
        if (const auto taken = takePresetSound(); !taken) return Failure{taken.message()};
    } else {
        read.heard = std::move(input.value().samples);
    }
    return read;
}

} // namespace zephyra

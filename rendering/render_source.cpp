#include "rendering/render_source.h"

#include "presets/preset_sound.h"
#include "rendering/file_clashes.h"
#include "stream/sample_loader.h"

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

Result<LoadedSample> readSampleFile(const std::filesystem::path& path, const Folders& folders,
                                    FileFacts& files, const Progress& progress) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    // A saved state names the sample and is used from other folders too.
    return readSample(error ? path : absolute, folders.shared, files, progress);
}

/// The first two channels into the host's input.
Result<SoundFile> readInput(const std::filesystem::path& path, const Progress& progress,
                            RenderSource& source) {
    SoundFileOptions reading;
    reading.progress = progress;
    reading.onBlock = [&source](const SoundFileInfo& info, const float* block,
                                std::uint32_t frames) {
        const std::size_t channels = info.channels;
        for (std::size_t n = 0; n < frames; ++n) {
            source.inputLeft.push_back(block[n * channels]);
            source.inputRight.push_back(block[n * channels + (channels > 1 ? 1 : 0)]);
        }
    };
    return readSoundFile(path, reading);
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
        auto loaded = readSampleFile(path, folders, *files, progress);
        if (!loaded) return Failure{loaded.message()};
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
    auto input = readInput(request.input, progress, read.source);
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

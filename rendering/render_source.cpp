#include "rendering/render_source.h"

#include "cli/command_folders.h"
#include "cli/interrupt.h"
#include "cli/options/file_clashes.h"
#include "presets/preset_sound.h"
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

Result<LoadedSample> readSampleFile(const std::filesystem::path& path, ProgressBar::Shown shown) {
    ProgressBar bar("Reading  ", shown);
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    // A saved state names the sample and is used from other folders too.
    return readSample(error ? path : absolute, commandFolders().shared, [&bar](double share) {
        bar.update(share);
        return !interrupted();
    });
}

/// The first two channels into the host's input.
Result<SoundFile> readInput(const std::filesystem::path& path, ProgressBar::Shown shown,
                            RenderSource& source) {
    ProgressBar bar("Reading  ", shown);
    SoundFileOptions reading;
    reading.progress = [&bar](double share) {
        bar.update(share);
        return !interrupted();
    };
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

Result<ReadSource> readRenderSource(const RenderOptions& options, ProgressBar::Shown bar) {
    ReadSource read;
    const auto take = [&](std::shared_ptr<mokSample> sample, SampleReference reference) {
        read.sample = read.source.sample = std::move(sample);
        read.source.reference = std::move(reference);
        read.shown = infoOf(read.source.reference);
        read.sampleFile = read.source.reference.path;
    };
    const auto takeSample = [&](const std::filesystem::path& path) -> Result<void> {
        auto loaded = readSampleFile(path, bar);
        if (!loaded) return Failure{loaded.message()};
        take(std::move(loaded.value().sound), std::move(loaded.value().reference));
        return {};
    };
    const auto takePresetSound = [&]() -> Result<void> {
        auto sound = findPresetSound(*options.preset, commandFolders());
        if (!sound) return Failure{sound.message()};
        take(std::move(sound.value().sample), std::move(sound.value().reference));
        return checkOverwriting(options, "the preset's sample", read.source.reference.path);
    };
    if (options.host.isInstrument()) {
        const auto taken = options.input.empty() ? takePresetSound() : takeSample(options.input);
        if (!taken) return Failure{taken.message()};
        read.input = read.shown;
        return read;
    }
    auto input = readInput(options.input, bar, read.source);
    if (!input) return Failure{input.message()};
    read.input = read.shown = input.value().info;
    if (options.host.sample) {
        if (const auto taken = takeSample(*options.host.sample); !taken)
            return Failure{"--sample: " + taken.message()};
    } else if (const auto& preset = options.preset;
               preset && preset->hasSound && !preset->live && !options.live) {
        if (const auto taken = takePresetSound(); !taken) return Failure{taken.message()};
    } else {
        read.heard = std::move(input.value().samples);
    }
    return read;
}

} // namespace zephyra

#include "cli/render_source.h"

#include "cli/interrupt.h"
#include "platform/folders.h"
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
    return readSample(error ? path : absolute, standardFolders().shared, [&bar](double share) {
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
    const auto takeSample = [&](const std::filesystem::path& path) -> Result<void> {
        auto loaded = readSampleFile(path, bar);
        if (!loaded) return Failure{loaded.message()};
        read.sample = read.source.sample = std::move(loaded.value().sound);
        read.source.reference = std::move(loaded.value().reference);
        read.shown = infoOf(read.source.reference);
        return {};
    };
    if (options.host.isInstrument()) {
        if (const auto taken = takeSample(options.input); !taken) return Failure{taken.message()};
        read.input = read.shown;
        return read;
    }
    auto input = readInput(options.input, bar, read.source);
    if (!input) return Failure{input.message()};
    read.input = read.shown = input.value().info;
    if (!options.host.sample)
        read.heard = std::move(input.value().samples);
    else if (const auto taken = takeSample(*options.host.sample); !taken)
        return Failure{"--sample: " + taken.message()};
    return read;
}

} // namespace zephyra

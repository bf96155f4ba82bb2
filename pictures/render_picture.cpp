#include "pictures/render_picture.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kScanStepsPerColumn = 8;

double secondsOf(std::uint64_t frames, double sampleRate) {
    return static_cast<double>(frames) / sampleRate;
}

} // namespace

RenderPicture::RenderPicture(const PictureLengths& lengths, const PictureGrid& grid)
    : seconds(secondsOf(lengths.frames, lengths.sampleRate)),
      sourceSeconds(secondsOf(lengths.sourceFrames, lengths.sourceRate)),
      source(lengths.sourceFrames, grid.source), left(lengths.frames, grid.time),
      right(lengths.frames, grid.time),
      spectrum(lengths.frames, lengths.sampleRate, grid.time, grid.frequencies) {
    map.seconds = map.playSeconds = seconds;
}

void RenderPicture::addOutput(const float* outLeft, const float* outRight, std::size_t frames) {
    isStereo = isStereo || !std::equal(outLeft, outLeft + frames, outRight);
    left.add(outLeft, frames);
    right.add(outRight, frames);
    spectrum.add(outLeft, outRight, frames);
}

double RenderPicture::finestSeconds() const {
    return seconds / (static_cast<double>(spectrum.columns()) * kScanStepsPerColumn);
}

void RenderPicture::addScan(const ScanRun& run) {
    addScanRun(map.scan, run, finestSeconds());
}

void RenderPicture::addControls(double atSeconds, std::span<const float> values) {
    for (std::size_t i = 0; i < std::min(values.size(), paths.size()); ++i)
        paths[i].add(atSeconds / seconds, values[i]);
}

} // namespace zephyra

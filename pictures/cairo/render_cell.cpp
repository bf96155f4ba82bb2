#include "pictures/cairo/render_cell.h"

#include "pictures/cairo/grain_lane.h"
#include "pictures/cairo/sound_lanes.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace zephyra {

namespace {

constexpr double kGap = 3;                                  // pixels between the lanes
constexpr double kLevelShare = 0.17, kSpectrumShare = 0.36; // of the cell's height

/// Both sides on as many columns as are wanted.
std::vector<WaveformColumns::Column> joined(const RenderPicture& picture, std::size_t wanted) {
    std::vector<WaveformColumns::Column> shown = picture.left.columns();
    const std::vector<WaveformColumns::Column> right = picture.right.columns();
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i].add(right[i]);
    return thinned(shown, wanted);
}

} // namespace

void drawRenderCell(Canvas& canvas, const Box& box, const RenderPicture& picture) {
    const double level = std::round(box.height * kLevelShare);
    const double spectrum = std::round(box.height * kSpectrumShare);
    const Box map = {box.x, box.y, box.width, box.height - level - spectrum - 2 * kGap};
    const Box wave = {box.x, map.bottom() + kGap, box.width, level};
    for (const Box& lane : {map, wave}) canvas.fill(lane, theme::panel);

    drawSourceGlow(canvas, map, picture.source.columns());
    drawGrainMap(canvas, map, picture.map);
    const auto columns = joined(picture, static_cast<std::size_t>(wave.width));
    drawWaveform(canvas, wave, columns, theme::output, waveformScale(largestLevel(columns)));
    drawSpectrogram(canvas, {box.x, wave.bottom() + kGap, box.width, spectrum}, picture.spectrum,
                    levelRange(picture.spectrum));
}

} // namespace zephyra

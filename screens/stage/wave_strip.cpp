#include "screens/stage/wave_strip.h"

#include "pictures/waveform_columns.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kShare = 0.4; // of the stage's height that full scale takes, either way

} // namespace

void placeColumns(const StageScene& scene, std::span<const WaveColumn> columns, float peak,
                  std::vector<WaveExtent>& extents) {
    const StageContents& of = scene.contents;
    const double full = of.isLive || of.isNormalized ? 1.0 : waveformScale(double{peak});
    const double gain = of.isLive ? 1.0 : double{of.gain};
    const double middle = scene.height() / 2.0, most = scene.height() * kShare;
    const double rows = most * gain / std::max(full, 1e-6);
    const auto place = [&](double level) {
        return static_cast<float>(middle - std::clamp(level * rows, -most * 1.2, most * 1.2));
    };
    constexpr float hair = 0.5f; // silence is a line
    extents.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const WaveColumn& column = columns[i];
        WaveExtent& to = extents[i];
        to.top = std::min(place(double{column.high}), static_cast<float>(middle) - hair);
        to.bottom = std::max(place(double{column.low}), static_cast<float>(middle) + hair);
        to.energyTop = std::max(to.top, place(double{column.rms}));
        to.energyBottom = std::min(to.bottom, place(-double{column.rms}));
    }
}

} // namespace zephyra

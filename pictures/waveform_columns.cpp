#include "pictures/waveform_columns.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

double WaveformColumns::Column::rms() const noexcept {
    return frames == 0 ? 0.0 : std::sqrt(squares / static_cast<double>(frames));
}

WaveformColumns::WaveformColumns(std::uint64_t frames, std::size_t columns)
    : frames_(std::max<std::uint64_t>(frames, 1)), columns_(std::max<std::size_t>(columns, 1)) {}

void WaveformColumns::add(const float* samples, std::size_t count) {
    for (std::size_t i = 0; i < count && seen_ < frames_; ++i, ++seen_) {
        const float sample = samples[i];
        Column& column = columns_[static_cast<std::size_t>(seen_ * columns_.size() / frames_)];
        column.low = column.frames == 0 ? sample : std::min(column.low, sample);
        column.high = column.frames == 0 ? sample : std::max(column.high, sample);
        column.squares += double{sample} * double{sample};
        ++column.frames;
    }
}

std::vector<WaveformColumns::Column> WaveformColumns::columns() const {
    std::vector<Column> shown = columns_;
    for (std::size_t i = 1; i < shown.size(); ++i)
        if (shown[i].frames == 0) shown[i] = shown[i - 1];
    return shown;
}

double largestLevel(const std::vector<WaveformColumns::Column>& columns) {
    double most = 0;
    for (const WaveformColumns::Column& column : columns)
        most = std::max({most, std::abs(double{column.low}), std::abs(double{column.high})});
    return most;
}

double waveformScale(double peak) {
    if (peak > 1) return peak;
    for (const double scale : {0.0625, 0.125, 0.25, 0.5})
        if (peak <= scale) return scale;
    return 1;
}

} // namespace zephyra

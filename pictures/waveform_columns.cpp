#include "pictures/waveform_columns.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

void WaveformColumns::Column::add(const Column& other) noexcept {
    if (other.frames == 0) return;
    low = frames == 0 ? other.low : std::min(low, other.low);
    high = frames == 0 ? other.high : std::max(high, other.high);
    squares += other.squares;
    frames += other.frames;
}

double WaveformColumns::Column::rms() const noexcept {
    return frames == 0 ? 0.0 : std::sqrt(squares / static_cast<double>(frames));
}

WaveformColumns::WaveformColumns(std::uint64_t frames, std::size_t columns)
    : frames_(std::max<std::uint64_t>(frames, 1)), columns_(std::max<std::size_t>(columns, 1)) {}

void WaveformColumns::add(const float* samples, std::size_t count) {
    for (std::size_t i = 0; i < count && seen_ < frames_; ++i, ++seen_) {
        const float sample = samples[i];
        columns_[static_cast<std::size_t>(seen_ * columns_.size() / frames_)].add(
            {sample, sample, double{sample} * double{sample}, 1});
    }
}

std::vector<WaveformColumns::Column> WaveformColumns::columns() const {
    std::vector<Column> shown = columns_;
    for (std::size_t i = 1; i < shown.size(); ++i)
        if (shown[i].frames == 0) shown[i] = shown[i - 1];
    return shown;
}

std::vector<WaveformColumns::Column> thinned(const std::vector<WaveformColumns::Column>& columns,
                                             std::size_t wanted) {
    if (columns.size() <= wanted) return columns;
    std::vector<WaveformColumns::Column> shown(wanted);
    for (std::size_t i = 0; i < columns.size(); ++i)
        shown[i * wanted / columns.size()].add(columns[i]);
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

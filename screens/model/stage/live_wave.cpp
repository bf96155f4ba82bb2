#include "screens/model/stage/live_wave.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

void LiveWave::beginAnew(const WaveForm& wave) {
    const LiveSample& live = *wave.liveSample();
    ++begins_;
    replacements_ = wave.liveReplacements();
    holds_ = wave.holds();
    size_ = live.size;
    index_ = live.offset;
    waiting_ = std::min<std::uint64_t>(live.heard, size_);
    next_ = (index_ + size_ - waiting_) % size_;
    written_ = size_ + index_;
    blocks_.assign((size_ + kBlock - 1) / kBlock, {});
    read_.resize(kMostAtOnce);
}

bool LiveWave::follow(const WaveForm& wave, double elapsed) {
    const LiveSample& live = *wave.liveSample();
    const bool isLate = elapsed >= double{live.duration()};
    const bool isNew = begins_ == 0 || isLate || live.size != size_ ||
                       wave.liveReplacements() != replacements_ || wave.holds() != holds_;
    if (isNew) beginAnew(wave);
    const std::uint64_t index = live.offset, wrote = (index + size_ - index_) % size_;
    index_ = index;
    written_ += wrote;
    waiting_ = std::min(size_, waiting_ + wrote);
    const std::uint64_t all = std::min<std::uint64_t>(waiting_, kMostAtOnce);
    for (std::uint64_t left = all; left > 0;) {
        const std::uint64_t count = std::min(left, size_ - next_);
        const std::span<float> frames(read_.data(), count);
        wave.copyLive(next_, frames);
        add(next_, frames);
        next_ = (next_ + count) % size_;
        left -= count;
    }
    waiting_ -= all;
    return isNew || all > 0;
}

void LiveWave::add(std::uint64_t first, std::span<const float> frames) {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        Block& block = blocks_[(first + i) / kBlock];
        if ((first + i) % kBlock == 0) block = {};
        const float value = frames[i];
        block.low = std::min(block.low, value);
        block.high = std::max(block.high, value);
        block.squares += value * value;
        ++block.frames;
    }
}

std::int64_t LiveWave::show(double first, double last, std::span<WaveColumn> columns) const {
    std::fill(columns.begin(), columns.end(), WaveColumn{});
    if (blocks_.empty() || !(last > first)) return 0;
    const double all = static_cast<double>(size_);
    const double step = (last - first) * all / static_cast<double>(columns.size());
    const double begin = static_cast<double>(written_) - all * (1.0 - first);
    const double number = std::floor(begin / step + 0.5), aligned = number * step;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const double from = aligned + static_cast<double>(i) * step;
        const double to = std::min(from + step, static_cast<double>(written_));
        if (from < 0.0 || to <= from) continue;
        WaveColumn& column = columns[i];
        double squares = 0.0, frames = 0.0;
        const auto end = static_cast<std::uint64_t>(to);
        for (auto at = static_cast<std::uint64_t>(from); at < end || frames == 0.0;) {
            const std::uint64_t place = at % size_;
            const Block& block = blocks_[place / kBlock];
            column.low = std::min(column.low, block.low);
            column.high = std::max(column.high, block.high);
            squares += double{block.squares};
            frames += std::max(1u, block.frames);
            at += std::min(kBlock - place % kBlock, size_ - place);
        }
        column.rms = static_cast<float>(std::sqrt(squares / frames));
    }
    return static_cast<std::int64_t>(number);
}

} // namespace zephyra

#include "screens/model/stage/wave_pyramid.h"

#include "platform/threads/render_clock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr double kLeastGroups = 8.0;            // to a column, whose ends they blur
constexpr std::size_t kBlocksBetweenLooks = 64; // at the clock

} // namespace

void WavePyramid::setSound(std::shared_ptr<const mokSample> sound) {
    sound_ = std::move(sound);
    blocks_.clear();
    groups_.clear();
    reached_ = 0;
    peak_ = 0.0f;
}

WavePyramid::Block WavePyramid::measure(const float* frames, std::size_t count) {
    Block block{.low = frames[0], .high = frames[0]};
    for (std::size_t i = 0; i < count; ++i) {
        block.low = std::min(block.low, frames[i]);
        block.high = std::max(block.high, frames[i]);
        block.squares += frames[i] * frames[i];
    }
    block.squares /= static_cast<float>(count);
    return block;
}

void WavePyramid::addBlock(const Block& block) {
    if (blocks_.size() % kGroup == 0) groups_.push_back({block.low, block.high, 0.0f});
    blocks_.push_back(block);
    Block& group = groups_.back();
    group.low = std::min(group.low, block.low);
    group.high = std::max(group.high, block.high);
    group.squares += block.squares / kGroup; // the last group may have fewer: its end fades
    peak_ = std::max({peak_, block.high, -block.low});
}

bool WavePyramid::build(double seconds) {
    if (isComplete()) return false;
    blocks_.reserve(sound_->size / kBlock + 1);
    const double end = renderSeconds() + seconds;
    do {
        for (std::size_t i = 0; i < kBlocksBetweenLooks && reached_ < sound_->size; ++i) {
            const std::size_t count = std::min<std::uint64_t>(kBlock, sound_->size - reached_);
            addBlock(measure(sound_->getPtr() + reached_, count));
            reached_ += count;
        }
    } while (reached_ < sound_->size && renderSeconds() < end);
    return true;
}

WaveColumn WavePyramid::column(double from, double to) const {
    from = std::max(from, 0.0);
    to = std::min(to, static_cast<double>(reached_));
    if (!(to > from)) return {};
    const auto covered = [&](std::size_t unit) {
        const auto first = static_cast<std::size_t>(from) / unit;
        return std::pair{first, std::max(first + 1, static_cast<std::size_t>(std::ceil(
                                                        to / static_cast<double>(unit))))};
    };
    const double width = to - from;
    if (width < 2.0 * kBlock) { // one frame more, so that neighbours join
        const auto [first, last] = covered(1);
        const std::size_t end = std::min<std::size_t>(last + 1, reached_);
        const Block block = measure(sound_->getPtr() + first, std::max(end, first + 1) - first);
        return {block.low, block.high, std::sqrt(block.squares)};
    }
    const bool inBlocks = width < kLeastGroups * kBlock * kGroup;
    const std::vector<Block>& parts = inBlocks ? blocks_ : groups_;
    const auto [first, last] = covered(inBlocks ? kBlock : kBlock * kGroup);
    WaveColumn column;
    double squares = 0.0;
    const std::size_t end = std::min(last, parts.size());
    for (std::size_t i = first; i < end; ++i) {
        column.low = std::min(column.low, parts[i].low);
        column.high = std::max(column.high, parts[i].high);
        squares += double{parts[i].squares};
    }
    if (end > first)
        column.rms = static_cast<float>(std::sqrt(squares / static_cast<double>(end - first)));
    return column;
}

void WavePyramid::show(double first, double last, std::span<WaveColumn> columns) const {
    const double all = static_cast<double>(frames());
    const double step = (last - first) / static_cast<double>(columns.size()) * all;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const double from = first * all + static_cast<double>(i) * step;
        columns[i] = column(from, from + step);
    }
}

} // namespace zephyra

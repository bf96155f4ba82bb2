#include "screens/model/stage/dirty_boxes.h"

#include <algorithm>
#include <limits>

namespace zephyra {

namespace {

constexpr std::size_t kReserved = 256;

long areaOf(const Box& box) {
    return static_cast<long>(box.width) * box.height;
}

Box around(const Box& a, const Box& b) {
    const int x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

} // namespace

void DirtyBoxes::setArea(int width, int height, int cellWidth, int cellHeight) {
    width_ = width;
    height_ = height;
    cellWidth_ = std::max(1, cellWidth);
    cellHeight_ = std::max(1, cellHeight);
    across_ = (width + cellWidth_ - 1) / cellWidth_;
    down_ = (height + cellHeight_ - 1) / cellHeight_;
    cells_.assign(static_cast<std::size_t>(std::max(0, across_ * down_)), 0);
    boxes_.reserve(kReserved);
    isEmpty_ = true;
}

void DirtyBoxes::add(const Box& box) {
    const int left = std::max(0, box.x), right = std::min(width_, box.right());
    const int top = std::max(0, box.y), bottom = std::min(height_, box.bottom());
    if (left >= right || top >= bottom) return;
    isEmpty_ = false;
    for (int row = top / cellHeight_; row <= (bottom - 1) / cellHeight_; ++row)
        std::fill_n(cells_.begin() + row * across_ + left / cellWidth_,
                    (right - 1) / cellWidth_ - left / cellWidth_ + 1, 1);
}

// A run of cells that continues one of the same extent above makes that one higher.
void DirtyBoxes::collectRuns() {
    boxes_.clear();
    for (int row = 0; row < down_; ++row)
        for (int at = 0; at < across_; ++at) {
            const unsigned char* const line = cells_.data() + row * across_;
            if (!line[at]) continue;
            const int begin = at;
            while (at < across_ && line[at]) ++at;
            const Box run{begin * cellWidth_, row * cellHeight_,
                          std::min(at * cellWidth_, width_) - begin * cellWidth_,
                          std::min((row + 1) * cellHeight_, height_) - row * cellHeight_};
            const auto above = std::find_if(boxes_.begin(), boxes_.end(), [&](const Box& box) {
                return box.x == run.x && box.width == run.width && box.bottom() == run.y;
            });
            if (above == boxes_.end())
                boxes_.push_back(run);
            else
                above->height += run.height;
        }
}

void DirtyBoxes::mergeCheapest() {
    std::size_t one = 0, two = 1;
    long least = std::numeric_limits<long>::max();
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        for (std::size_t k = i + 1; k < boxes_.size(); ++k) {
            const long more =
                areaOf(around(boxes_[i], boxes_[k])) - areaOf(boxes_[i]) - areaOf(boxes_[k]);
            if (more >= least) continue;
            least = more;
            one = i;
            two = k;
        }
    boxes_[one] = around(boxes_[one], boxes_[two]);
    boxes_.erase(boxes_.begin() + static_cast<std::ptrdiff_t>(two));
}

const std::vector<Box>& DirtyBoxes::take() {
    collectRuns();
    while (boxes_.size() > kMost) mergeCheapest();
    std::fill(cells_.begin(), cells_.end(), 0);
    isEmpty_ = true;
    return boxes_;
}

} // namespace zephyra

#include "screens/model/stage/dirty_boxes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zephyra {

namespace {

constexpr std::size_t kReserved = 64;
constexpr long kWorth = 4000, kWideWorth = 1500; // measured: pixels of a wide area lie far apart
constexpr long kWideArea = 2'000'000;

long areaOf(const Box& box) {
    return static_cast<long>(box.width) * box.height;
}

Box around(const Box& a, const Box& b) {
    const int x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

/// Pixels that a and b together cover more than each by itself; fewer than 0 where they overlap.
long costOf(const Box& a, const Box& b) {
    return areaOf(around(a, b)) - areaOf(a) - areaOf(b);
}

} // namespace

DirtyBoxes::DirtyBoxes() {
    boxes_.reserve(kReserved);
    taken_.reserve(kReserved);
}

void DirtyBoxes::setArea(int width, int height) {
    width_ = width;
    height_ = height;
    worth_ = long{width} * height < kWideArea ? kWorth : kWideWorth;
    boxes_.clear();
}

void DirtyBoxes::add(const Box& box) {
    const int left = std::max(0, box.x), right = std::min(width_, box.right());
    const int top = std::max(0, box.y), bottom = std::min(height_, box.bottom());
    if (left >= right || top >= bottom) return;
    Box all{left, top, right - left, bottom - top};
    while (!boxes_.empty()) {
        const auto nearest =
            std::min_element(boxes_.begin(), boxes_.end(), [&](const Box& a, const Box& b) {
                return costOf(a, all) < costOf(b, all);
            });
        if (costOf(*nearest, all) > worth_) break;
        all = around(*nearest, all);
        *nearest = boxes_.back();
        boxes_.pop_back();
    }
    boxes_.push_back(all);
    if (boxes_.size() == kReserved) mergeCheapest();
}

void DirtyBoxes::mergeCheapest() {
    std::size_t one = 0, two = 1;
    long least = std::numeric_limits<long>::max();
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        for (std::size_t k = i + 1; k < boxes_.size(); ++k) {
            const long more = costOf(boxes_[i], boxes_[k]);
            if (more >= least) continue;
            least = more;
            one = i;
            two = k;
        }
    boxes_[one] = around(boxes_[one], boxes_[two]);
    boxes_.erase(boxes_.begin() + static_cast<std::ptrdiff_t>(two));
}

const std::vector<Box>& DirtyBoxes::take() {
    while (boxes_.size() > kMost) mergeCheapest();
    std::swap(boxes_, taken_);
    boxes_.clear();
    return taken_;
}

} // namespace zephyra

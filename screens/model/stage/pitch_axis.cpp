#include "screens/model/stage/pitch_axis.h"

#include <algorithm>
#include <array>

namespace zephyra {

namespace {

struct Range {
    int semitones;
    std::array<int, 3> labels;
    std::size_t count;
};

// A fifth, an octave, and octaves.
constexpr std::array<Range, 4> kRanges{
    {{7, {4, 7}, 2}, {12, {7, 12}, 2}, {24, {12, 24}, 2}, {36, {12, 24, 36}, 3}}};

const Range& rangeFor(double wanted) {
    const auto holds = std::find_if(kRanges.begin(), kRanges.end(), [wanted](const Range& range) {
        return wanted <= range.semitones + 0.01;
    });
    return holds == kRanges.end() ? kRanges.back() : *holds;
}

} // namespace

bool PitchAxis::advance(double wanted, double elapsed, bool glides) {
    const int fits = rangeFor(wanted).semitones;
    if (!begun_) { // nobody saw it before
        begun_ = true;
        range_ = target_ = fits;
        return true;
    }
    narrowFor_ = fits < target_ ? narrowFor_ + elapsed : 0.0;
    if (fits > target_ || narrowFor_ > kNarrowsAfter) {
        target_ = fits;
        from_ = range_;
        glide_ = narrowFor_ = 0.0;
    }
    if (glide_ >= 1.0) return false;
    glide_ = glides ? std::min(1.0, glide_ + elapsed / kGlideSeconds) : 1.0;
    const double rest = 1.0 - glide_, eased = 1.0 - rest * rest * rest;
    range_ = from_ + (target_ - from_) * eased;
    return true;
}

std::span<const int> PitchAxis::labels() const {
    const Range& range = rangeFor(target_);
    return {range.labels.data(), range.count};
}

} // namespace zephyra

// StageGround: all of the stage that stands still between two edits, as pictures.
#pragma once

#include "screens/stage/pixels.h"
#include "screens/stage/wave_strip.h"

#include <vector>

namespace zephyra {

/// Two pictures: the sound at rest with the part outside the region darkened, and the sound as it
/// is within the jitter's reach. Those of live input go round, so that what scrolls is not drawn
/// again: the marks, which do not scroll, are then drawn over what was copied. Message thread.
class StageGround {
public:
    /// Draws both anew. extents: a stage's width of them.
    void draw(const StageScene& scene, std::vector<WaveExtent> extents);
    /// Live input went so many columns on, at least 0 and fewer than the stage has.
    void scroll(const StageScene& scene, std::vector<WaveExtent> extents, int by);

    /// Copies a box of one of them.
    void copy(const Pixels& to, bool isLit, const Box& box) const;
    /// Whether marks go over the copies.
    bool hasMarks() const noexcept { return scrolls_; }
    /// Within pixels' clip, of which picture are the letters' pixels.
    void drawMarks(const StageScene& scene, const Pixels& pixels, juce::Image& picture) const;
    const std::vector<WaveExtent>& extents() const noexcept { return extents_; }

private:
    void fill(const StageScene& scene, const Pixels& pixels, bool isLit, int first, int last) const;
    void drawWave(const Pixels& pixels, bool isLit, int first, int last) const;
    /// Where a column of the stage is kept.
    int kept(int x) const { return (x + origin_) % static_cast<int>(extents_.size()); }

    juce::Image atRest_, lit_;
    std::vector<WaveExtent> extents_;
    int origin_ = 0;
    bool scrolls_ = false;
};

} // namespace zephyra

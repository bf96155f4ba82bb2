// StageGround: all of the stage that stands still between two edits, as pictures.
#pragma once

#include "screens/stage/pixels.h"
#include "screens/stage/wave_strip.h"

#include <vector>

namespace zephyra {

/// Two pictures: the sound at rest with the part outside the region darkened, and the sound as it
/// is within the jitter's reach. Message thread.
class StageGround {
public:
    /// Draws both anew. extents: a stage's width of them.
    void draw(const StageScene& scene, std::vector<WaveExtent> extents);

    const juce::Image& atRest() const noexcept { return atRest_; }
    const juce::Image& lit() const noexcept { return lit_; }
    const std::vector<WaveExtent>& extents() const noexcept { return extents_; }

private:
    void drawWave(const StageScene& scene, juce::Image& image, bool isLit) const;
    void drawGrid(const StageScene& scene, juce::Image& image) const;
    void drawTexts(const StageScene& scene, juce::Image& image) const;
    void drawCells(const StageScene& scene, juce::Image& image) const;

    juce::Image atRest_, lit_;
    std::vector<WaveExtent> extents_;
};

} // namespace zephyra

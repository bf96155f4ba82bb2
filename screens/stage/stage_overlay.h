// StageOverlay: what stands over the stage now and then: a finger's ring, the mark of a sound that
// is held, what is loading, the edge of live input, the frame of the focus.
#pragma once

#include "screens/model/stage/stage_hands.h"
#include "screens/stage/stage_scene.h"

#include <juce_graphics/juce_graphics.h>

#include <array>
#include <optional>

namespace zephyra {

/// Message thread.
class StageOverlay {
public:
    /// Follows scene and hands; the rectangles that are to be painted again, empty ones included.
    std::array<Box, 6> follow(const StageScene& scene, const StageHands& hands);
    void paint(juce::Graphics& graphics, const StageScene& scene, bool isFocused) const;
    /// What it stands in, but for the frame; empty ones included.
    std::array<Box, 4> boxes(const StageScene& scene) const;

private:
    void paintPin(juce::Graphics& graphics, const StageScene& scene) const;

    std::optional<Box> ring_;
    std::optional<Box> pin_;
    std::optional<HoldMark::Shown> hold_; ///< as pin_ shows it
    std::optional<int> loaded_;           ///< pixels of its bar
    bool isWriting_ = false;
};

} // namespace zephyra

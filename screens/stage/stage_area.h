// StageArea: the sound with its grains and scan, and the ruler below.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/model/stage/stage_hands.h"
#include "screens/stage/stage_canvas.h"

#include <vector>

namespace zephyra {

/// Message thread.
class StageArea final : public ScreenArea {
public:
    explicit StageArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;

private:
    bool groundDiffers() const;
    void drawGround();
    void takeContents(const FrameTime& time);

    StageReader reader_;
    WavePyramid pyramid_;
    StageScene scene_, drawn_; // now, and as the ground was drawn
    StageHands hands_;
    StageCanvas canvas_;
    std::vector<WaveColumn> columns_;
    bool renews_ = true;
};

} // namespace zephyra

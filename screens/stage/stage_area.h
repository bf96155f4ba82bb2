// StageArea: the sound with its grains and scan, and the ruler below.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class StageArea final : public ScreenArea {
public:
    explicit StageArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

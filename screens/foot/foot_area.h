// FootArea: drawers, one sentence of help, CPU and dropped grains.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class FootArea final : public ScreenArea {
public:
    explicit FootArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

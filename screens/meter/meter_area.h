// MeterArea: level, peak and clip lights.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class MeterArea final : public ScreenArea {
public:
    explicit MeterArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

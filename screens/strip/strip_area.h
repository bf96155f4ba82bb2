// StripArea: spectrum and scope.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class StripArea final : public ScreenArea {
public:
    explicit StripArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

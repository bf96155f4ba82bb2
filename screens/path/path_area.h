// PathArea: the knobs in the order of the signal.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class PathArea final : public ScreenArea {
public:
    explicit PathArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

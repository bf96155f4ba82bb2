// TopArea: transport, preset, sample, edits, tempo.
#pragma once

#include "screens/draw/screen_area.h"

namespace zephyra {

/// Message thread.
class TopArea final : public ScreenArea {
public:
    explicit TopArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
};

} // namespace zephyra

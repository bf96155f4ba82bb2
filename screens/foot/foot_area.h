// FootArea: drawers, the sentence of help, CPU and dropped grains.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/foot/foot_figure.h"
#include "screens/foot/foot_tab_button.h"
#include "screens/model/foot/foot_boxes.h"
#include "screens/model/foot/foot_line.h"

#include <array>
#include <memory>

namespace zephyra {

/// Message thread.
class FootArea final : public juce::Component, public ScreenArea {
public:
    explicit FootArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;

private:
    void makeTabs();
    void place();
    double textPixels() const { return layout_.measures.nameText * layout_.scale; }

    ScreenContext& context_;
    FootLine line_;
    ScreenLayout layout_;
    FootShown shown_;
    FootBoxes boxes_;
    std::array<std::unique_ptr<FootTabButton>, kDrawers> tabs_;
    FootFigure cpu_, dropped_;
};

} // namespace zephyra

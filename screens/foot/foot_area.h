// FootArea: drawers, the sentence of help, CPU and dropped grains.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/foot/foot_tab_button.h"
#include "screens/model/foot/foot_boxes.h"
#include "screens/model/foot/foot_line.h"

#include <array>
#include <memory>

namespace zephyra {

/// Message thread.
class FootArea final : public ScreenArea {
public:
    explicit FootArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
    void mouseMove(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;

private:
    void makeTabs();
    void place();
    void repaintText(const Box& box) { repaint(box.x, box.y, box.width, box.height); }
    double textPixels() const { return layout_.measures.nameText * layout_.scale; }

    FootLine line_;
    ScreenLayout layout_;
    FootShown shown_; // as painted
    FootBoxes boxes_;
    std::array<std::unique_ptr<FootTabButton>, kDrawers> tabs_;
};

} // namespace zephyra

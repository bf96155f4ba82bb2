// MeterArea: levels of what leaves the plug-in.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/draw/screen_control.h"
#include "screens/model/meter/meter_model.h"
#include "screens/model/meter/meter_scale.h"

#include <array>
#include <string>

namespace zephyra {

/// A click or Enter puts the clip lights out and forgets the highest peak; a right click
/// offers to switch displays on and off. Message thread.
class MeterArea final : public ScreenControl, public ScreenArea {
public:
    explicit MeterArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void hoverChanged() override {}
    bool takeKey(const juce::KeyPress& key) override;
    void clear();
    void openMenu(const Box& at); ///< below it
    void update(std::size_t channel);
    void paintScale(juce::Graphics& graphics) const;
    void paintChannel(juce::Graphics& graphics, std::size_t channel) const;

    MeterModel model_;
    ScreenLayout layout_;
    MeterBoxes boxes_;
    std::array<MeterPixels, 2> painted_;
    std::string highest_;
};

} // namespace zephyra

// StripView: what spectrum and scope have in common: a trace with labels, on and off, keys, focus.
#pragma once

#include "screens/draw/screen_control.h"
#include "screens/draw/span_image.h"
#include "screens/model/strip/strip_model.h"

#include <span>
#include <string>
#include <vector>

namespace zephyra {

class WindowBlitter;

/// A click or Enter switches it. Message thread.
class StripView : public ScreenControl {
public:
    /// model outlives it.
    StripView(ScreenContext& context, StripModel& model, const std::string& title,
              const std::string& help);

    void layOut(const ScreenLayout& layout, const Box& box);
    /// Follows the model; what changed is painted in blit().
    void frame(const FrameTime& time);
    void blit(WindowBlitter& blitter);
    bool isOn() const { return model_.isOn(); }

    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    struct Label {
        juce::String text;
        float x, centreY;
    };

    virtual void laidOut() = 0; ///< the bounds are set: labels are to be given anew
    virtual void drawGround(juce::Graphics& graphics) = 0;
    virtual void drawTrace(SpanImage& picture) = 0;
    virtual juce::Colour traceColour() const = 0;
    virtual juce::Colour fillColour() const { return juce::Colours::transparentBlack; }

    const ScreenLayout& layout() const noexcept { return layout_; }
    float px(double units) const { return static_cast<float>(units * layout_.scale); }
    /// They stand over the trace.
    void setLabels(const std::vector<Label>& labels);

private:
    struct Written {
        juce::Image letters;
        juce::Rectangle<int> box;
    };

    void hoverChanged() override {}
    bool takeKey(const juce::KeyPress& key) override;
    Written written(const Label& label) const;
    void paintRows(const PixelRows& rows, const Box& box) const;

    StripModel& model_;
    ScreenLayout layout_;
    SpanImage picture_;
    std::span<const Box> moved_; // of the picture, to be painted
    std::vector<Written> labels_;
    bool wasOn_ = false;
};

} // namespace zephyra

// StripView: what spectrum and scope have in common: on and off, keys, focus.
#pragma once

#include "screens/draw/span_image.h"
#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <string>

namespace zephyra {

/// A click or Enter switches it. Message thread.
class StripView : public juce::Component {
public:
    StripView(ScreenContext& context, const std::string& title, const std::string& help);

    void layOut(const ScreenLayout& layout, const Box& box);
    /// Shows on by what the model says.
    virtual void frame(const FrameTime& time) = 0;

    void paint(juce::Graphics& graphics) override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    virtual bool isOn() const = 0;
    virtual void toggle() = 0;

protected:
    virtual void laidOut() = 0; ///< the picture has its new size
    virtual void drawGround(juce::Graphics& graphics) = 0;
    virtual void drawTrace(SpanImage::Pen& pen) = 0;
    virtual void drawText(juce::Graphics& graphics) = 0; ///< over the trace

    const ScreenLayout& layout() const noexcept { return layout_; }
    float px(double units) const { return static_cast<float>(units * layout_.scale); }
    void label(juce::Graphics& graphics, const juce::String& text, float x, float centreY) const;

private:
    void showHelp(bool on);

    ScreenContext& context_;
    std::string help_;
    ScreenLayout layout_;
    SpanImage picture_;
};

} // namespace zephyra

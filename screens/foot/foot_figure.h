// FootFigure: a figure of the foot, with what it means.
#pragma once

#include "screens/draw/screen_control.h"

#include <functional>

namespace zephyra {

/// Reached by Tab like all else; one that can be pressed is, by a click or Enter. Message thread.
class FootFigure final : public ScreenControl {
public:
    /// pressed: empty for one that only tells.
    FootFigure(ScreenContext& context, const std::string& title, const std::string& help,
               std::function<void()> pressed = {});

    /// In the foot; letters so high, pixels.
    void place(const Box& box, double letters);
    void show(const std::string& text, Color color);

    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void hoverChanged() override {}
    bool takeKey(const juce::KeyPress& key) override;

    const std::function<void()> pressed_;
    std::string text_;
    Color color_;
    double letters_ = 12.0;
    int inset_ = 0; // of the text, pixels
};

} // namespace zephyra

#include "screens/foot/foot_tab_button.h"

#include "screens/draw/brush.h"

namespace zephyra {

void FootTabButton::show(const std::string& title, double pixels, bool isOpen) {
    if (title_ == title && pixels_ == pixels && isOpen_ == isOpen) return;
    title_ = title;
    pixels_ = pixels;
    isOpen_ = isOpen;
    setValue(isOpen ? "open" : "");
    repaint();
}

void FootTabButton::paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color) {
    const bool isNear = reached().isHovered || reached().isPressed || isOpen_;
    graphics.setFont(brush::medium(pixels_));
    graphics.setColour(brush::colour(isNear ? palette::kBright : palette::kText));
    graphics.drawText(brush::text(title_), cell, juce::Justification::centred, false);
    if (!isOpen_) return;
    graphics.fillRect(cell.reduced(px(6), 0).removeFromBottom(px(2)));
}

} // namespace zephyra

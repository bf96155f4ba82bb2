#include "screens/foot/foot_figure.h"

#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

FootFigure::FootFigure(ScreenContext& context, const std::string& title, const std::string& help,
                       std::function<void()> pressed)
    : ScreenControl(context, title), pressed_(std::move(pressed)) {
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setHelp(help);
}

void FootFigure::place(const Box& box, double letters) {
    letters_ = letters;
    inset_ = juce::roundToInt(letters / 3);
    setBounds(brush::rectangle(box).expanded(inset_, 0)); // room for the frame
    repaint();
}

void FootFigure::show(const std::string& text, Color color) {
    if (text == text_ && color == color_) return;
    text_ = text;
    color_ = color;
    setValue(text);
    repaint();
}

void FootFigure::paint(juce::Graphics& graphics) {
    graphics.setFont(brush::medium(letters_));
    graphics.setColour(brush::colour(color_));
    graphics.drawText(brush::text(text_), getLocalBounds().reduced(inset_, 0).toFloat(),
                      juce::Justification::centredRight, true);
    paintFocus(graphics, juce::jmax(1, juce::roundToInt(letters_ / 7)));
}

void FootFigure::mouseUp(const juce::MouseEvent& event) {
    if (pressed_ && !event.mods.isPopupMenu() && getLocalBounds().contains(event.getPosition()))
        pressed_();
}

bool FootFigure::takeKey(const juce::KeyPress& key) {
    if (!pressed_ || key != juce::KeyPress::returnKey) return false;
    pressed_();
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> FootFigure::createAccessibilityHandler() {
    using juce::AccessibilityRole;
    juce::AccessibilityActions actions;
    if (pressed_) actions.addAction(juce::AccessibilityActionType::press, pressed_);
    return std::make_unique<juce::AccessibilityHandler>(
        *this, pressed_ ? AccessibilityRole::button : AccessibilityRole::staticText, actions);
}

} // namespace zephyra

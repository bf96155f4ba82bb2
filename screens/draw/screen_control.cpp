#include "screens/draw/screen_control.h"

#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

ScreenControl::ScreenControl(ScreenContext& context, const std::string& title) : context_(context) {
    setTitle(brush::text(title));
}

void ScreenControl::setHelp(const std::string& help) {
    if (help_ == help) return;
    help_ = help;
    setHelpText(brush::text(help));
    if (isHovered_ || showsFocus_) tell(sentence());
}

void ScreenControl::setValue(const std::string& value) {
    const juce::String text = brush::text(value);
    if (getDescription() != text) setDescription(text);
}

void ScreenControl::tell(const std::string& sentence) {
    if (context_.help) context_.help(sentence);
}

void ScreenControl::hover(bool on) {
    if (std::exchange(isHovered_, on) != on) hoverChanged();
    tell(on ? sentence() : std::string());
}

void ScreenControl::showFocus(bool on) {
    if (std::exchange(showsFocus_, on) != on) reachChanged();
}

void ScreenControl::mouseEnter(const juce::MouseEvent&) {
    hover(true);
}

void ScreenControl::mouseExit(const juce::MouseEvent&) {
    hover(false);
}

void ScreenControl::focusGained(FocusChangeType cause) {
    if (cause == focusChangedByTabKey) context_.isByKeys = true;
    if (cause == focusChangedByMouseClick) context_.isByKeys = false;
    showFocus(context_.isByKeys);
    if (showsFocus_) tell(sentence());
}

void ScreenControl::focusLost(FocusChangeType) {
    if (showsFocus_ && !isHovered_) tell({});
    showFocus(false);
}

bool ScreenControl::keyPressed(const juce::KeyPress& key) {
    if (key.getModifiers().isCtrlDown() || key.getModifiers().isCommandDown() ||
        key.getModifiers().isAltDown())
        return false;
    if (hasKeyboardFocus(false)) showFocus(context_.isByKeys = true);
    return takeKey(key);
}

void ScreenControl::paintFocus(juce::Graphics& graphics, int line) const {
    if (!showsFocus_) return;
    graphics.setColour(brush::colour(palette::kBright));
    graphics.drawRect(getLocalBounds(), line);
}

} // namespace zephyra

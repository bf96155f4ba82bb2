#include "screens/draw/screen_button.h"

#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

namespace {

constexpr double kFrameUnits = 2.0, kArmedFrameUnits = 1.5;

class Handler final : public juce::AccessibilityHandler {
public:
    Handler(ScreenButton& button, bool isSwitch)
        : AccessibilityHandler(button,
                               isSwitch ? juce::AccessibilityRole::toggleButton
                                        : juce::AccessibilityRole::button,
                               actions(button, isSwitch)),
          button_(button), isSwitch_(isSwitch) {}

    juce::AccessibleState getCurrentState() const override {
        auto state = AccessibilityHandler::getCurrentState();
        if (!isSwitch_) return state;
        state = state.withCheckable();
        return button_.face().light == ButtonLight::off ? state : state.withChecked();
    }

private:
    static juce::AccessibilityActions actions(ScreenButton& button, bool isSwitch) {
        juce::AccessibilityActions made;
        made.addAction(juce::AccessibilityActionType::press, [&button] { button.press(); });
        if (isSwitch)
            made.addAction(juce::AccessibilityActionType::toggle, [&button] { button.press(); });
        return made;
    }

    ScreenButton& button_;
    bool isSwitch_;
};

} // namespace

ScreenButton::ScreenButton(ScreenContext& context, const std::string& title, std::string help)
    : context_(context) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setTitle(brush::text(title));
    setHelp(help);
}

void ScreenButton::place(const Box& box, double scale) {
    scale_ = scale;
    setBounds(brush::rectangle(box));
    setVisible(box.width > 0); // else the keyboard would find it
    repaint();
}

void ScreenButton::setIcon(Icon icon, double units) {
    if (icon_ == icon && iconUnits_ == units) return;
    icon_ = icon;
    iconUnits_ = units;
    repaint();
}

void ScreenButton::setLabel(const std::string& label, double pixels) {
    if (!icon_ && label_ == label && labelPixels_ == pixels) return;
    icon_.reset();
    label_ = label;
    labelPixels_ = pixels;
    repaint();
}

void ScreenButton::setFace(const ButtonFace& face) {
    if (face_ == face) return;
    face_ = face;
    repaint();
}

void ScreenButton::setHelp(const std::string& help) {
    if (help_ == help && !help.empty()) return;
    help_ = help;
    setHelpText(brush::text(help));
    if (reach_.isHovered || reach_.isFocused) showHelp(true);
}

void ScreenButton::setValue(const std::string& value) {
    const juce::String text = brush::text(value);
    if (getDescription() != text) setDescription(text);
}

void ScreenButton::press() {
    if (!face_.isEnabled) return;
    tell(ButtonTouch::down);
    tell(ButtonTouch::inside);
}

void ScreenButton::tell(ButtonTouch touch) {
    if (touched) touched(touch);
    if (touch == ButtonTouch::inside && pressed) pressed();
}

void ScreenButton::paint(juce::Graphics& graphics) {
    const ButtonColors colors = buttonColors(face_, reach_, ground_);
    const auto cell = getLocalBounds().toFloat();
    graphics.fillAll(brush::colour(ground_));
    graphics.setColour(brush::colour(colors.fill));
    if (colors.fill.alpha > 0.0f) graphics.fillRoundedRectangle(cell, px(corner_));
    if (colors.frame.alpha > 0.0f) {
        const float width = px(reach_.isFocused ? kFrameUnits : kArmedFrameUnits);
        graphics.setColour(brush::colour(colors.frame));
        graphics.drawRoundedRectangle(cell.reduced(width / 2), px(corner_) - width / 2, width);
    }
    paintSign(graphics, cell, colors.sign);
}

void ScreenButton::paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) {
    if (icon_)
        return drawIcon(graphics, *icon_,
                        cell.withSizeKeepingCentre(px(iconUnits_), px(iconUnits_)),
                        brush::colour(sign));
    graphics.setColour(brush::colour(sign));
    graphics.setFont(brush::medium(labelPixels_));
    graphics.drawText(brush::text(label_), cell, juce::Justification::centred, true);
}

void ScreenButton::reach(ButtonReach reach) {
    if (std::exchange(reach_, reach) != reach) repaint();
}

void ScreenButton::showHelp(bool on) {
    if (context_.help) context_.help(on ? help_ : std::string());
}

void ScreenButton::mouseEnter(const juce::MouseEvent&) {
    ButtonReach near = reach_;
    near.isHovered = true;
    reach(near);
    showHelp(true);
}

void ScreenButton::mouseExit(const juce::MouseEvent&) {
    ButtonReach away = reach_;
    away.isHovered = false;
    reach(away);
    showHelp(false);
}

void ScreenButton::mouseDown(const juce::MouseEvent& event) {
    if (finger_ || !face_.isEnabled) return;
    if (event.mods.isPopupMenu()) {
        if (menuAsked) menuAsked();
        return;
    }
    finger_ = event.source.getIndex();
    ButtonReach held = reach_;
    held.isPressed = true;
    reach(held);
    tell(ButtonTouch::down);
}

void ScreenButton::mouseDrag(const juce::MouseEvent& event) {
    if (finger_ != event.source.getIndex()) return;
    ButtonReach held = reach_;
    held.isPressed = getLocalBounds().contains(event.getPosition());
    reach(held);
}

void ScreenButton::mouseUp(const juce::MouseEvent& event) {
    if (finger_ != event.source.getIndex()) return;
    finger_.reset();
    ButtonReach left = reach_;
    left.isPressed = false;
    reach(left);
    tell(getLocalBounds().contains(event.getPosition()) ? ButtonTouch::inside
                                                        : ButtonTouch::outside);
}

bool ScreenButton::keyPressed(const juce::KeyPress& key) {
    if (key == juce::KeyPress(juce::KeyPress::F10Key, juce::ModifierKeys::shiftModifier, 0) &&
        menuAsked && face_.isEnabled) {
        menuAsked();
        return true;
    }
    if (key != juce::KeyPress::spaceKey && key != juce::KeyPress::returnKey) return false;
    press();
    return true;
}

/// A frame is for who walks by keys: a window that opens focuses its first button.
void ScreenButton::focusGained(FocusChangeType cause) {
    if (cause != focusChangedByTabKey) return;
    ButtonReach near = reach_;
    near.isFocused = true;
    reach(near);
    showHelp(true);
}

void ScreenButton::focusLost(FocusChangeType) {
    if (!reach_.isFocused) return;
    ButtonReach away = reach_;
    away.isFocused = false;
    reach(away);
    showHelp(false);
}

std::unique_ptr<juce::AccessibilityHandler> ScreenButton::createAccessibilityHandler() {
    return std::make_unique<Handler>(*this, isSwitch_);
}

} // namespace zephyra

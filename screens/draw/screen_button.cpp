#include "screens/draw/screen_button.h"

#include "screens/draw/brush.h"
#include "screens/draw/switch_access.h"

#include <utility>

namespace zephyra {

namespace {

constexpr double kFrameUnits = 2.0, kArmedFrameUnits = 1.5, kGapUnits = 1.5;

} // namespace

ScreenButton::ScreenButton(ScreenContext& context, const std::string& title, std::string help)
    : ScreenControl(context, title) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
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

void ScreenButton::press() {
    if (!face_.isEnabled) return;
    send(ButtonTouch::down);
    send(ButtonTouch::inside);
}

void ScreenButton::send(ButtonTouch touch) {
    if (touched) touched(touch);
    if (touch == ButtonTouch::inside && pressed) pressed();
}

void ScreenButton::paint(juce::Graphics& graphics) {
    const ButtonColors colors = buttonColors(face_, reached(), ground_);
    const auto cell = getLocalBounds().toFloat();
    graphics.fillAll(brush::colour(ground_));
    graphics.setColour(brush::colour(colors.fill));
    // A lit one is as bright as the frame: a gap parts them.
    const auto body = showsFocus() ? cell.reduced(px(kFrameUnits + kGapUnits)) : cell;
    if (colors.fill.alpha > 0.0f) graphics.fillRoundedRectangle(body, px(corner_));
    if (colors.frame.alpha > 0.0f) {
        const float width = px(showsFocus() ? kFrameUnits : kArmedFrameUnits);
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

void ScreenButton::hold(bool isPressed) {
    if (std::exchange(isPressed_, isPressed) != isPressed) repaint();
}

void ScreenButton::mouseDown(const juce::MouseEvent& event) {
    if (finger_ || !face_.isEnabled) return;
    if (event.mods.isPopupMenu()) {
        if (menuAsked) menuAsked();
        return;
    }
    finger_ = event.source.getIndex();
    hold(true);
    send(ButtonTouch::down);
}

void ScreenButton::mouseDrag(const juce::MouseEvent& event) {
    if (!isHeldBy(event)) return;
    hold(getLocalBounds().contains(event.getPosition()));
}

void ScreenButton::mouseUp(const juce::MouseEvent& event) {
    if (!isHeldBy(event)) return;
    finger_.reset();
    hold(false);
    send(getLocalBounds().contains(event.getPosition()) ? ButtonTouch::inside
                                                        : ButtonTouch::outside);
}

bool ScreenButton::takeKey(const juce::KeyPress& key) {
    if (key == juce::KeyPress(juce::KeyPress::F10Key, juce::ModifierKeys::shiftModifier, 0) &&
        menuAsked && face_.isEnabled) {
        menuAsked();
        return true;
    }
    if (key != juce::KeyPress::returnKey) return false;
    press();
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> ScreenButton::createAccessibilityHandler() {
    const auto press = [this] { this->press(); };
    if (isSwitch_)
        return switchAccess(
            *this, [this] { return face_.light != ButtonLight::off; }, press);
    return std::make_unique<juce::AccessibilityHandler>(
        *this, juce::AccessibilityRole::button,
        juce::AccessibilityActions().addAction(juce::AccessibilityActionType::press, press));
}

} // namespace zephyra

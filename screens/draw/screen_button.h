// ScreenButton: a button of the window, with a sign or a word.
#pragma once

#include "screens/draw/icons.h"
#include "screens/draw/screen_control.h"
#include "screens/model/button_face.h"
#include "screens/model/button_touch.h"

#include <functional>
#include <optional>
#include <string>

namespace zephyra {

/// Draws a face and tells of touches; what they do is others' matter. Reached by Tab, pressed by
/// Enter, for Space plays; a click leaves the keyboard where it is. A button that is not enabled is
/// reached and explained, but not pressed. Others draw more than a sign by paintSign. Message
/// thread.
class ScreenButton : public ScreenControl {
public:
    /// title: for assistive technology, "Freeze". help: one sentence that the foot shows.
    ScreenButton(ScreenContext& context, const std::string& title, std::string help);

    std::function<void(ButtonTouch)> touched = {}; ///< every part of a press
    std::function<void()> pressed = {};            ///< after touched(inside)
    std::function<void()> menuAsked = {};          ///< a right click, or Shift and F10

    /// Where it stands in its parent, pixels; an empty box hides it. scale: of a unit.
    void place(const Box& box, double scale);
    void setIcon(Icon icon, double units = 18.0); ///< the sign's side
    /// A word instead, in letters so high, medium; pixels.
    void setLabel(const std::string& label, double pixels);
    void setFace(const ButtonFace& face);
    void setCorner(double units) { corner_ = units; }   ///< 6 at first
    void setSurface(Color ground) { ground_ = ground; } ///< what it stands on; the ground at first
    /// Whether it is a switch, for assistive technology; a push button at first.
    void setSwitch(bool isSwitch) { isSwitch_ = isSwitch; }

    const ButtonFace& face() const noexcept { return face_; }
    /// As a key or assistive technology presses it.
    void press();

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    bool takeKey(const juce::KeyPress& key) override;
    /// What stands in the cell, which is filled; sign: the colour that is read on it.
    virtual void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign);
    float px(double units) const { return static_cast<float>(units * scale_); }
    /// Whether this pointer pressed it and has not let go.
    bool isHeldBy(const juce::MouseEvent& event) const {
        return finger_ == event.source.getIndex();
    }
    ButtonReach reached() const noexcept { return {isHovered(), isPressed_, showsFocus()}; }

private:
    void hold(bool isPressed);
    void send(ButtonTouch touch);

    std::string label_;
    std::optional<Icon> icon_;
    double iconUnits_ = 18.0, labelPixels_ = 12.0, corner_ = 6.0, scale_ = 1.0;
    Color ground_ = palette::kGround;
    ButtonFace face_;
    bool isSwitch_ = false, isPressed_ = false;
    std::optional<int> finger_; // the pointer that holds it down
};

} // namespace zephyra

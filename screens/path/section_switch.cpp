#include "screens/path/section_switch.h"

#include "screens/draw/brush.h"
#include "screens/draw/switch_access.h"
#include "screens/draw/switch_pill.h"
#include "screens/model/help_texts.h"

#include <utility>

namespace zephyra {

using namespace palette;

namespace {

constexpr int kReachAround = 5; // pixels at a height of 12

} // namespace

SectionSwitch::SectionSwitch(ScreenContext& context, ControlId id, SwitchShape shape,
                             std::function<void(ControlId)> flip)
    : ScreenControl(context, controlRange(id).name), id_(id), shape_(shape),
      flip_(std::move(flip)) {
    setWantsKeyboardFocus(true);
    setHelp(helpText(id));
}

void SectionSwitch::place(const Box& drawn, double text) {
    text_ = text;
    const int around = juce::roundToInt(kReachAround * drawn.height / 14.0);
    const auto box = brush::rectangle(drawn);
    setBounds(box.expanded(around));
    drawn_ = (box - getPosition()).toFloat();
    repaint();
}

void SectionSwitch::show(const PathModel& model) {
    if (isOn_ == model.isOn(id_)) return;
    isOn_ = model.isOn(id_);
    repaint();
}

void SectionSwitch::paint(juce::Graphics& graphics) {
    if (shape_ == SwitchShape::pill)
        drawSwitchPill(graphics, drawn_, {isOn_, isHovered()});
    else
        paintChip(graphics, drawn_);
    if (!showsFocus()) return;
    const float width = drawn_.getHeight() / 8;
    const auto frame = drawn_.expanded(2.2f * width);
    graphics.setColour(brush::colour(kBright));
    graphics.drawRoundedRectangle(
        frame, frame.getHeight() * (shape_ == SwitchShape::pill ? 0.5f : 0.28f), width);
}

void SectionSwitch::paintChip(juce::Graphics& graphics, juce::Rectangle<float> box) const {
    const float corner = box.getHeight() / 4, line = box.getHeight() / 14;
    if (isOn_) {
        graphics.setColour(brush::colour(isHovered() ? kBright : kArc));
        graphics.fillRoundedRectangle(box, corner);
    } else {
        if (isHovered()) {
            graphics.setColour(brush::colour(kRaised));
            graphics.fillRoundedRectangle(box, corner);
        }
        graphics.setColour(brush::colour(kTrack));
        graphics.drawRoundedRectangle(box.reduced(line / 2), corner, line);
    }
    graphics.setColour(brush::colour(isOn_ ? kInk : isHovered() ? kBright : kFaint));
    graphics.setFont(isOn_ ? brush::medium(text_) : brush::regular(text_));
    graphics.drawText("Sync", box, juce::Justification::centred, false);
}

void SectionSwitch::mouseUp(const juce::MouseEvent& event) {
    if (getLocalBounds().contains(event.getPosition()) && !event.mods.isPopupMenu()) flip_(id_);
}

bool SectionSwitch::takeKey(const juce::KeyPress& key) {
    if (key != juce::KeyPress::returnKey) return false;
    flip_(id_);
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> SectionSwitch::createAccessibilityHandler() {
    return switchAccess(
        *this, [this] { return isOn_; }, [this] { flip_(id_); });
}

} // namespace zephyra

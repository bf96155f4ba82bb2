#include "screens/path/small_cells.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <utility>

namespace zephyra {

using namespace palette;

namespace {

constexpr int kDotColumns = 6;
constexpr float kDotDistance = 9.2f, kDot = 6.0f; // units
constexpr float kLeastLight = 0.35f;

juce::Colour dotColour(const VoicesFace::Dot& dot) {
    if (dot.light == 0) return brush::colour(kTrack);
    const float light = static_cast<float>(dot.light) / VoicesFace::kMostLight;
    Color lit = palette::pitch(double{dot.semitones});
    lit.alpha = kLeastLight + (1.0f - kLeastLight) * light;
    return brush::colour(blend(kGround, lit));
}

} // namespace

VoicesCell::VoicesCell(ScreenContext& context, const PathCell& cell) : PathCellView(context, cell) {
    setTitle("Grains");
    setHelp(helpText(HelpId::voices));
    setValue(face_.name());
    setWantsKeyboardFocus(false);
}

void VoicesCell::show(const PathModel& model) {
    if (face_ == model.voices()) return;
    face_ = model.voices();
    setValue(face_.name() + (face_.dropped ? ", dropped" : ""));
    repaint();
}

void VoicesCell::paint(juce::Graphics& graphics) {
    KnobLook::drawCell(graphics, place(), {});
    const auto unit = static_cast<float>(place().scale);
    constexpr int kRows = static_cast<int>(kVoices) / kDotColumns;
    const float distance = kDotDistance * unit;
    const float width = distance * (kDotColumns - 1), height = distance * (kRows - 1);
    const juce::Point centre(static_cast<float>(place().centreX),
                             static_cast<float>(place().centreY));
    for (std::size_t i = 0; i < kVoices; ++i) {
        const int at = static_cast<int>(i);
        const juce::Point dot(
            centre.x - width / 2 + distance * static_cast<float>(at % kDotColumns),
            centre.y - height / 2 + distance * static_cast<float>(at / kDotColumns));
        graphics.setColour(dotColour(face_.dots[i]));
        graphics.fillEllipse(juce::Rectangle(kDot * unit, kDot * unit).withCentre(dot));
    }
    if (face_.dropped) {
        graphics.setColour(brush::colour(kAccent));
        graphics.drawRoundedRectangle(
            juce::Rectangle(width + 14 * unit, height + 13 * unit).withCentre(centre), 5 * unit,
            1.5f * unit);
    }
    KnobLook::drawName(graphics, place(), {}, face_.name(), false);
}

std::unique_ptr<juce::AccessibilityHandler> VoicesCell::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::staticText);
}

KeepCell::KeepCell(ScreenContext& context, const PathCell& cell, std::function<void()> keep)
    : PathCellView(context, cell), keep_(std::move(keep)) {
    setTitle("Keep what LIVE heard");
    setValue("unavailable");
    setHelp(helpText(HelpId::keepLive));
}

void KeepCell::show(const PathModel& model) {
    if (face_ == model.keep()) return;
    face_ = model.keep();
    setValue(face_.isAvailable() ? face_.name() : "unavailable");
    repaint();
}

void KeepCell::paint(juce::Graphics& graphics) {
    CellReach ground = reach();
    ground.isHovered = ground.isPressed = false;
    KnobLook::drawCell(graphics, place(), ground);
    const auto unit = static_cast<float>(place().scale);
    const juce::Point centre(static_cast<float>(place().centreX),
                             static_cast<float>(place().centreY));
    const auto side = static_cast<float>(place().diameter) - 2.0f * unit;
    const bool lit = face_.isAvailable() && (reach().isHovered || reach().isPressed);
    graphics.setColour(brush::colour(lit ? kPressed : kRaised));
    graphics.fillEllipse(juce::Rectangle(side, side).withCentre(centre));
    juce::Path sign; // into a tray
    sign.startNewSubPath(0, -6.5f);
    sign.lineTo(0, 2.0f);
    sign.startNewSubPath(-3.5f, -1.5f);
    sign.lineTo(0, 2.0f);
    sign.lineTo(3.5f, -1.5f);
    sign.startNewSubPath(-6.5f, 1.5f);
    sign.lineTo(-6.5f, 6.0f);
    sign.lineTo(6.5f, 6.0f);
    sign.lineTo(6.5f, 1.5f);
    graphics.setColour(brush::colour(!face_.isAvailable() ? kDim : lit ? kBright : kArc));
    graphics.strokePath(sign, juce::PathStrokeType(1.5f),
                        juce::AffineTransform::scale(unit).translated(centre));
    CellReach name;
    name.isHovered = lit;
    KnobLook::drawName(graphics, place(), name, face_.name(), !face_.isAvailable());
}

void KeepCell::press() {
    if (face_.isAvailable()) keep_();
}

void KeepCell::mouseDown(const juce::MouseEvent&) {
    CellReach pressed = reach();
    pressed.isPressed = true;
    setReach(pressed);
}

void KeepCell::mouseUp(const juce::MouseEvent& event) {
    CellReach up = reach();
    up.isPressed = false;
    setReach(up);
    if (getLocalBounds().contains(event.getPosition())) press();
}

bool KeepCell::takeKey(const juce::KeyPress& key) {
    if (key != juce::KeyPress::returnKey) return false;
    press();
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> KeepCell::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(
        *this, juce::AccessibilityRole::button,
        juce::AccessibilityActions().addAction(juce::AccessibilityActionType::press,
                                               [this] { press(); }));
}

} // namespace zephyra

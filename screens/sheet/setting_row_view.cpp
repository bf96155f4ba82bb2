// What a row draws; its hands are in setting_row_hands.cpp.
#include "screens/sheet/setting_row_view.h"

#include "screens/draw/brush.h"
#include "screens/draw/switch_pill.h"

#include <utility>

namespace zephyra {

using namespace palette;

namespace {

constexpr double kNameText = 13.0, kValueText = 13.0, kChoiceText = 12.0; // units

} // namespace

SettingRowView::SettingRowView(ScreenContext& context, SettingsModel& model, std::size_t row,
                               SettingRowCalls calls)
    : ScreenControl(context, model.rows()[row].entry->name), model_(model), row_(row),
      calls_(std::move(calls)), shown_(model.rows()[row]) {
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setHelp(helpOf(*shown_.entry));
    setValue(shown_.value);
}

SettingRowView::~SettingRowView() = default;

void SettingRowView::place(const Box& box, double scale) {
    scale_ = scale;
    setBounds(brush::rectangle(box));
    boxes_ = settingRowBoxes({0, 0, box.width, box.height}, kind(), scale);
    closeField();
    repaint();
}

void SettingRowView::show() {
    const SettingRow& now = model_.rows()[row_];
    if (now == shown_) return;
    shown_ = now;
    setValue(now.value);
    if (auto* const handler = getAccessibilityHandler())
        handler->notifyAccessibilityEvent(juce::AccessibilityEvent::valueChanged);
    repaint();
}

void SettingRowView::paint(juce::Graphics& graphics) {
    const auto cell = getLocalBounds().toFloat();
    if (isHovered()) {
        graphics.setColour(brush::colour(kRaised));
        graphics.fillRoundedRectangle(cell, px(6));
    }
    if (showsFocus()) {
        graphics.setColour(brush::colour(kBright));
        graphics.drawRoundedRectangle(cell.reduced(px(1)), px(6), px(2));
    }
    graphics.setColour(brush::colour(isHovered() || showsFocus() ? kBright : kText));
    graphics.setFont(brush::regular(px(kNameText)));
    graphics.drawText(shown_.entry->name, brush::rectangle(boxes_.name),
                      juce::Justification::centredLeft, true);
    const auto value = [&](const Box& box, Color color, juce::Justification where) {
        graphics.setColour(brush::colour(color));
        graphics.setFont(brush::medium(px(kValueText)));
        brush::drawLine(graphics, shown_.value, brush::floats(box), where);
    };
    switch (kind()) {
    case SettingKind::choice:
        return paintChoices(graphics);
    case SettingKind::toggle:
        drawSwitchPill(graphics,
                       brush::floats(boxes_.control)
                           .withSizeKeepingCentre(static_cast<float>(boxes_.control.width), px(16)),
                       {.isOn = shown_.chosen == 1, .isHovered = isHovered()});
        return value(boxes_.value, kBright, juce::Justification::centredLeft);
    case SettingKind::amount:
        paintSlider(graphics);
        if (!field_) value(boxes_.value, kBright, juce::Justification::centredRight);
        return;
    case SettingKind::action:
        value(boxes_.control, kBright, juce::Justification::centredLeft);
        return paintButton(graphics);
    case SettingKind::fact:
        return value(boxes_.value, kText, juce::Justification::centredLeft);
    }
}

void SettingRowView::paintChoices(juce::Graphics& graphics) const {
    const auto& choices = shown_.entry->choices;
    graphics.setColour(brush::colour(kPressed));
    graphics.fillRoundedRectangle(brush::floats(boxes_.control), px(4));
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const Box box = choiceBox(boxes_.control, i, choices.size());
        const bool holds = i == shown_.chosen;
        if (holds) {
            graphics.setColour(brush::colour(kArc));
            graphics.fillRoundedRectangle(brush::floats(box).reduced(px(2)), px(3));
        }
        graphics.setColour(brush::colour(holds ? kInk : kText));
        graphics.setFont(holds ? brush::medium(px(kChoiceText)) : brush::regular(px(kChoiceText)));
        graphics.drawText(brush::text(choices[i]), brush::rectangle(box),
                          juce::Justification::centred, false);
    }
}

void SettingRowView::paintSlider(juce::Graphics& graphics) const {
    const auto box = brush::floats(boxes_.control);
    const float y = box.getCentreY(), half = px(5);
    const float from = box.getX() + half, to = box.getRight() - half;
    const float x = from + shown_.share * (to - from);
    graphics.setColour(brush::colour(kTrack));
    graphics.fillRoundedRectangle(from, y - px(2), to - from, px(4), px(2));
    graphics.setColour(brush::colour(kArc));
    graphics.fillRoundedRectangle(from, y - px(2), x - from, px(4), px(2));
    graphics.setColour(brush::colour(kBright));
    graphics.fillEllipse(juce::Rectangle(2 * half, 2 * half).withCentre({x, y}));
}

void SettingRowView::paintButton(juce::Graphics& graphics) const {
    graphics.setColour(brush::colour(isHovered() ? kTrack : kPressed));
    graphics.fillRoundedRectangle(brush::floats(boxes_.value), px(4));
    graphics.setColour(brush::colour(kBright));
    graphics.setFont(brush::medium(px(kChoiceText)));
    graphics.drawText("Choose", brush::rectangle(boxes_.value), juce::Justification::centred,
                      false);
}

} // namespace zephyra

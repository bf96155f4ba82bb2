#include "plugin/juce/alert_line.h"

#include <utility>

namespace zephyra {

namespace {

constexpr int kHeight = 56, kButtonWidth = 76, kFieldWidth = 150, kGap = 6;

} // namespace

AlertLine::AlertLine(Pressed pressed) : pressed_(std::move(pressed)) {
    text_.setMinimumHorizontalScale(0.7f);
    addAndMakeVisible(text_);
    addChildComponent(field_);
}

void AlertLine::show(const std::optional<ShownAlert>& alert) {
    alert_ = alert;
    buttons_.clear();
    if (!alert) return;
    text_.setText(juce::String::fromUTF8(alert->message.c_str()), juce::dontSendNotification);
    text_.setTooltip(text_.getText());
    field_.setVisible(alert->typed.has_value());
    field_.setText(juce::String::fromUTF8(alert->typed.value_or("").c_str()), false);
    for (std::size_t i = 0; i < alert->buttons.size(); ++i) {
        auto& button = *buttons_.emplace_back(
            std::make_unique<juce::TextButton>(juce::String::fromUTF8(alert->buttons[i].c_str())));
        button.onClick = [this, i] { pressed_(*alert_, i, field_.getText().toStdString()); };
        addAndMakeVisible(button);
    }
    resized();
}

int AlertLine::wantedHeight() const {
    return alert_ ? kHeight : 0;
}

void AlertLine::resized() {
    auto area = getLocalBounds().reduced(kGap);
    for (auto button = buttons_.rbegin(); button != buttons_.rend(); ++button) {
        (*button)->setBounds(
            area.removeFromRight(kButtonWidth).withSizeKeepingCentre(kButtonWidth, 26));
        area.removeFromRight(kGap);
    }
    if (field_.isVisible())
        field_.setBounds(area.removeFromRight(kFieldWidth).withSizeKeepingCentre(kFieldWidth, 26));
    text_.setBounds(area);
}

void AlertLine::paint(juce::Graphics& graphics) {
    graphics.fillAll(juce::Colour(0xff6b3a1e));
}

} // namespace zephyra

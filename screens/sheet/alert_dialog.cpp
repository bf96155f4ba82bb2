#include "screens/sheet/alert_dialog.h"

#include "screens/draw/brush.h"
#include "screens/draw/text_field.h"
#include "screens/sheet/panel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr int kWidth = 480, kMargin = 24, kGap = 16, kField = 32, kButton = 36; // units
constexpr double kTitleText = 18.0, kMessageText = 14.0, kButtonText = 13.0;

} // namespace

AlertDialog::AlertDialog(ScreenContext& context, const ShownAlert& alert,
                         const std::vector<bool>& destroys, Answered answered)
    : context_(context), alert_(alert), destroys_(destroys), answered_(std::move(answered)) {
    setTitle(brush::text(alert.title));
    setDescription(brush::text(alert.message));
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    if (alert_.typed) {
        field_.setText(brush::text(*alert_.typed), juce::dontSendNotification);
        field_.setTitle(brush::text(alert.title));
        dressTextField(field_);
        field_.setJustification(juce::Justification::centredLeft);
        field_.onReturnKey = [this] {
            if (isSafe(0)) answer(0);
        };
        field_.onEscapeKey = [this] { answer(dismissing()); };
        addAndMakeVisible(field_);
    }
    for (std::size_t i = 0; i < alert_.buttons.size(); ++i) {
        const bool isDestructive = i < destroys_.size() && destroys_[i];
        auto button = std::make_unique<ScreenButton>(context, alert_.buttons[i], "");
        button->setFace({.light = isDestructive ? ButtonLight::alive : ButtonLight::off});
        button->setSurface(palette::kStage);
        button->pressed = [this, i] { answer(i); };
        addAndMakeVisible(*button);
        buttons_.push_back(std::move(button));
    }
}

bool AlertDialog::isSafe(std::size_t button) const {
    return button >= destroys_.size() || !destroys_[button];
}

std::size_t AlertDialog::dismissing() const {
    const auto named = std::ranges::find_if(
        alert_.buttons, [](const auto& title) { return title == "Cancel" || title == "NO"; });
    if (named != alert_.buttons.end())
        return static_cast<std::size_t>(named - alert_.buttons.begin());
    for (std::size_t i = alert_.buttons.size(); i-- > 0;)
        if (isSafe(i)) return i;
    return alert_.buttons.size(); // none: the alert waits for a click
}

void AlertDialog::answer(std::size_t button) {
    if (button >= buttons_.size() || !answered_) return;
    const Answered answered = std::exchange(answered_, {});
    answered(button, alert_.typed ? field_.getText().toStdString() : std::string());
}

/// JUCE's own would go on to what is below.
void AlertDialog::moveFocus(bool back) {
    std::vector<juce::Component*> ring;
    if (alert_.typed) ring.push_back(&field_);
    for (const auto& button : buttons_) ring.push_back(button.get());
    if (ring.empty()) return;
    const auto at = std::ranges::find_if(
        ring, [](const juce::Component* one) { return one->hasKeyboardFocus(true); });
    const std::size_t count = ring.size();
    const auto place = static_cast<std::size_t>(at - ring.begin());
    const std::size_t next =
        at == ring.end() ? (back ? count - 1 : 0) : (place + (back ? count - 1 : 1)) % count;
    ring[next]->grabKeyboardFocus();
}

bool AlertDialog::keyPressed(const juce::KeyPress& key) {
    context_.isByKeys = true;
    if (key.getKeyCode() == juce::KeyPress::tabKey) moveFocus(key.getModifiers().isShiftDown());
    if (key == juce::KeyPress::spaceKey)
        for (const auto& button : buttons_)
            if (button->hasKeyboardFocus(false)) return button->press(), true;
    if (key == juce::KeyPress::returnKey || key == juce::KeyPress::escapeKey) answer(dismissing());
    return true; // what is below hears nothing
}

void AlertDialog::parentHierarchyChanged() {
    if (isShowing()) takeKeyboard();
}

void AlertDialog::takeKeyboard() {
    if (alert_.typed) {
        field_.grabKeyboardFocus();
        field_.selectAll();
    } else {
        grabKeyboardFocus();
    }
}

int AlertDialog::textHeight(const juce::String& text, const juce::Font& font, int width) const {
    if (text.isEmpty()) return 0;
    juce::AttributedString string(text);
    string.setFont(font);
    juce::TextLayout layout;
    layout.createLayout(string, static_cast<float>(width));
    return static_cast<int>(std::ceil(layout.getHeight()));
}

void AlertDialog::layOut(const ScreenLayout& layout) {
    scale_ = layout.scale;
    const auto px = [&](double units) { return layout.px(units); };
    setBounds(brush::rectangle(layout.window));
    const int inside = px(kWidth - 2 * kMargin);
    const int title = textHeight(brush::drawn(alert_.title), brush::medium(px(kTitleText)), inside);
    const int message =
        textHeight(brush::drawn(alert_.message), brush::regular(px(kMessageText)), inside);
    const int field = alert_.typed ? px(kField + kGap) : 0;
    const int height =
        2 * px(kMargin) + title + px(kGap) + message + px(kGap) + field + px(kButton);
    panel_ = juce::Rectangle<int>(px(kWidth), height).withCentre(getLocalBounds().getCentre());
    auto area = panel_.reduced(px(kMargin));
    title_ = area.removeFromTop(title);
    area.removeFromTop(px(kGap));
    message_ = area.removeFromTop(message);
    area.removeFromTop(px(kGap));
    if (alert_.typed) {
        field_.applyFontToAllText(brush::regular(px(kMessageText)));
        field_.setBounds(area.removeFromTop(px(kField)));
        area.removeFromTop(px(kGap));
    }
    if (buttons_.empty()) return;
    const int count = static_cast<int>(buttons_.size());
    const int width = (area.getWidth() - (count - 1) * px(kGap)) / count;
    for (int i = 0; i < count; ++i) {
        auto& button = *buttons_[static_cast<std::size_t>(i)];
        button.place({area.getX() + i * (width + px(kGap)), area.getY(), width, px(kButton)},
                     scale_);
        button.setLabel(alert_.buttons[static_cast<std::size_t>(i)], px(kButtonText));
    }
}

void AlertDialog::paint(juce::Graphics& graphics) {
    drawPanel(graphics, panel_, scale_);
    const auto draw = [&](const std::string& text, const juce::Font& font, Color color,
                          juce::Rectangle<int> box) {
        juce::AttributedString string(brush::drawn(text));
        string.setFont(font);
        string.setColour(brush::colour(color));
        string.draw(graphics, box.toFloat());
    };
    draw(alert_.title, brush::medium(kTitleText * scale_), palette::kBright, title_);
    draw(alert_.message, brush::regular(kMessageText * scale_), palette::kText, message_);
}

} // namespace zephyra

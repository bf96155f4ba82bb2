#include "screens/top/preset_button.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr double kInset = 8, kDot = 6, kDotGap = 7, kBar = 2; // units
// Shares of the height on which the two lines are centred.
constexpr float kNameCentre = 0.40f, kBankCentre = 0.80f;

} // namespace

PresetButton::PresetButton(ScreenContext& context) : ScreenButton(context, "Preset", {}) {
    setFace({.isBare = true});
}

void PresetButton::show(const PresetShown& shown, const LayoutMeasures& measures, double scale) {
    if (shown_ == shown && measures_.presetText == measures.presetText && scale_ == scale) return;
    scale_ = scale;
    shown_ = shown;
    measures_ = measures;
    setHelp(helpText(HelpId::preset,
                     shown.title() + (shown.bank.empty() ? "" : " of " + shown.line())));
    setValue(shown.title() + (shown.isChanged ? ", changed" : ""));
    textWidth_ = measured();
    repaint();
}

bool PresetButton::takeKey(const juce::KeyPress& key) {
    const bool isLeft = key == juce::KeyPress::leftKey;
    if (!isLeft && key != juce::KeyPress::rightKey) return ScreenButton::takeKey(key);
    if (stepped) stepped(isLeft ? -1 : 1);
    return true;
}

int PresetButton::measured() const {
    const float name = brush::medium(measures_.presetText * scale_)
                           .getStringWidthFloat(brush::drawn(shown_.title()));
    const float bank =
        brush::medium(measures_.unitText * scale_).getStringWidthFloat(brush::drawn(shown_.line()));
    const auto dot = static_cast<float>((kDotGap + kDot) * scale_);
    return static_cast<int>(std::ceil(juce::jmax(name + dot, bank))) + 2;
}

void PresetButton::paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color) {
    const auto text = cell.reduced(px(kInset), 0.0f);
    const bool isLoading = shown_.loading.has_value();
    const float dot = px(kDot);
    const juce::Font font = brush::medium(px(measures_.presetText));
    const std::string name = shown_.title();
    const float room = text.getWidth() - (shown_.isChanged ? px(kDotGap) + dot : 0.0f);
    const float width = juce::jmin(room, font.getStringWidthFloat(brush::drawn(name)) + 1.0f);
    const float y = cell.getHeight() * (shown_.line().empty() ? 0.5f : kNameCentre);
    graphics.setFont(font);
    graphics.setColour(
        brush::colour(isLoading || shown_.name.empty() ? palette::kDim : palette::kBright));
    brush::drawLine(graphics, name, text.withHeight(2.0f * y).withWidth(width + 1.0f),
                    juce::Justification::centredLeft);
    if (shown_.isChanged)
        graphics.fillEllipse(text.getX() + width + px(kDotGap), y - dot / 2 + 1.0f, dot, dot);
    const float lineY = cell.getHeight() * kBankCentre;
    if (isLoading) {
        juce::Rectangle<float> bar(text.getX(), cell.getBottom() - px(kBar) - 1.0f, text.getWidth(),
                                   px(kBar));
        graphics.setColour(brush::colour(palette::kTrack));
        graphics.fillRect(bar);
        graphics.setColour(brush::colour(palette::kArc));
        graphics.fillRect(bar.withWidth(bar.getWidth() * static_cast<float>(*shown_.loading)));
    }
    graphics.setFont(brush::medium(px(measures_.unitText)));
    graphics.setColour(brush::colour(palette::kFaint));
    const float half = px(measures_.unitText);
    brush::drawLine(graphics, shown_.line(), text.withY(lineY - half).withHeight(2.0f * half),
                    juce::Justification::centredLeft);
}

} // namespace zephyra

#include "screens/top/sample_view.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr float kNameCentre = 0.44f, kFactsCentre = 0.80f; // shares of the height
constexpr double kNameMore = 2.0, kInset = 8.0;            // over the names of knobs; units

} // namespace

SampleView::SampleView(ScreenContext& context) : ScreenButton(context, "Sound", {}) {
    setFace({.isBare = true});
}

void SampleView::show(const SampleShown& shown, const LayoutMeasures& measures, double scale) {
    if (shown_ == shown && measures_.nameText == measures.nameText && scale_ == scale) return;
    shown_ = shown;
    measures_ = measures;
    scale_ = scale;
    setDescription(brush::text(shown.name + ", " + secondLine()));
    setHelp(helpText(HelpId::sound));
    if (isHovered() || showsFocus()) tell(sentence());
    textWidth_ = measured();
    repaint();
}

int SampleView::measured() const {
    const float name = brush::medium((measures_.nameText + kNameMore) * scale_)
                           .getStringWidthFloat(brush::drawn(shown_.name));
    const float facts =
        brush::medium(measures_.unitText * scale_).getStringWidthFloat(brush::text(secondLine()));
    return static_cast<int>(std::ceil(juce::jmax(name, facts))) + 4;
}

void SampleView::paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color) {
    const auto text = cell.reduced(px(kInset), 0.0f);
    const auto draw = [&](const std::string& line, double size, float share, Color colour) {
        const auto height = static_cast<float>(size * scale_);
        graphics.setFont(brush::medium(height));
        graphics.setColour(brush::colour(colour));
        brush::drawLine(graphics, line,
                        text.withY(text.getHeight() * share - height).withHeight(2.0f * height),
                        juce::Justification::centredLeft);
    };
    draw(shown_.name, measures_.nameText + kNameMore, kNameCentre,
         shown_.isMissing ? palette::kDim : palette::kBright);
    draw(secondLine(), measures_.unitText, kFactsCentre,
         shown_.isMissing ? palette::kAccent : palette::kFaint);
}

std::string SampleView::sentence() const {
    if (shown_.name.empty()) return {};
    return helpText(shown_.isMissing ? HelpId::soundMissing
                    : shown_.isLive  ? HelpId::soundLive
                                     : HelpId::soundNamed,
                    shown_.name);
}

} // namespace zephyra

#include "screens/draw/help_tip.h"

#include "screens/draw/brush.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr int kRest = 700; // milliseconds
constexpr double kText = 12.0, kWidth = 280.0, kPadding = 8.0, kBelow = 20.0, kAway = 4.0; // units

} // namespace

HelpTip::HelpTip(juce::Component& window) : TooltipWindow(&window, kRest) {
    setLookAndFeel(&look_);
    setOpaque(false); // its corners are round
}

HelpTip::~HelpTip() {
    setLookAndFeel(nullptr);
}

void HelpTip::layOut(const ScreenLayout& layout) {
    look_.scale = layout.scale;
    hideTip();
}

juce::String HelpTip::getTipFor(juce::Component& component) {
    const juce::Component* const window = getParentComponent();
    if (juce::ModifierKeys::currentModifiers.isAnyMouseButtonDown() ||
        component.isCurrentlyBlockedByAnotherModalComponent() || !window)
        return {};
    const int most = window->getWidth() * window->getHeight() / 4;
    for (const juce::Component* one = &component; one && one != window;
         one = one->getParentComponent()) {
        if (dynamic_cast<const TellsItself*>(one)) return {};
        if (one->getHelpText().isNotEmpty())
            return one->getWidth() * one->getHeight() < most ? one->getHelpText() : juce::String();
    }
    return {};
}

juce::TextLayout HelpTip::Look::written(const juce::String& tip) const {
    juce::AttributedString text(brush::drawn(tip.toStdString()));
    text.setFont(brush::regular(kText * scale));
    text.setColour(brush::colour(palette::kText));
    juce::TextLayout layout;
    layout.createLayout(text, static_cast<float>(kWidth * scale));
    return layout;
}

/// Below the pointer, or above it where there is no room.
juce::Rectangle<int> HelpTip::Look::getTooltipBounds(const juce::String& tip, juce::Point<int> at,
                                                     juce::Rectangle<int> inside) {
    const juce::TextLayout text = written(tip);
    const int width = static_cast<int>(std::ceil(text.getWidth())) + 2 * px(kPadding);
    const int height = static_cast<int>(std::ceil(text.getHeight())) + 2 * px(kPadding);
    const bool fits = at.y + px(kBelow) + height + px(kAway) <= inside.getBottom();
    const int y = fits ? at.y + px(kBelow) : at.y - px(kPadding) - height;
    return juce::Rectangle<int>(at.x, y, width, height)
        .constrainedWithin(inside.reduced(px(kAway)));
}

void HelpTip::Look::drawTooltip(juce::Graphics& graphics, const juce::String& tip, int width,
                                int height) {
    const juce::Rectangle<float> box(0.0f, 0.0f, static_cast<float>(width),
                                     static_cast<float>(height));
    graphics.setColour(brush::colour(palette::kRaised));
    graphics.fillRoundedRectangle(box, static_cast<float>(px(4)));
    graphics.setColour(brush::colour(palette::kTrack));
    graphics.drawRoundedRectangle(box.reduced(0.5f), static_cast<float>(px(4)), 1.0f);
    written(tip).draw(graphics, box.reduced(static_cast<float>(px(kPadding))));
}

} // namespace zephyra

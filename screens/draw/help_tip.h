// HelpTip: the window's tooltips.
#pragma once

#include "screens/model/screen_layout.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// What shows its help itself wants no tip, which would cover what stands beside it.
struct TellsItself {
    virtual ~TellsItself() = default;
};

/// Shows the help text of what the mouse rests on, once it has rested for 0.7 s; none while a
/// button is down, and none over what takes a quarter of the window or more, whose sentence stands
/// in the foot and which a tip would cover. Stays inside the window. Message thread.
class HelpTip final : public juce::TooltipWindow {
public:
    /// Becomes a child of window, which outlives it.
    explicit HelpTip(juce::Component& window);
    ~HelpTip() override;

    void layOut(const ScreenLayout& layout);
    juce::String getTipFor(juce::Component& component) override;

private:
    struct Look final : juce::LookAndFeel_V4 {
        juce::Rectangle<int> getTooltipBounds(const juce::String& tip, juce::Point<int> at,
                                              juce::Rectangle<int> inside) override;
        void drawTooltip(juce::Graphics& graphics, const juce::String& tip, int width,
                         int height) override;
        juce::TextLayout written(const juce::String& tip) const;
        int px(double units) const { return juce::roundToInt(units * scale); }
        double scale = 1.0;
    };

    Look look_;
};

} // namespace zephyra

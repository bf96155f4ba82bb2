// SampleView: the name of the sound and its facts.
#pragma once

#include "screens/model/screen_context.h"
#include "screens/model/top/sample_line.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// Message thread.
class SampleView final : public juce::Component {
public:
    explicit SampleView(ScreenContext& context);

    void show(const SampleShown& shown, const LayoutMeasures& measures, double scale);
    /// Of its texts, pixels.
    int textWidth() const noexcept { return textWidth_; }

    void paint(juce::Graphics& graphics) override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;

private:
    int measured() const;
    std::string secondLine() const { return shown_.isMissing ? "missing" : shown_.facts; }

    ScreenContext& context_;
    SampleShown shown_;
    LayoutMeasures measures_{};
    double scale_ = 0.0;
    int textWidth_ = 0;
};

} // namespace zephyra

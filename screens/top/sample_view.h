// SampleView: the name of the sound and its facts; a press loads another, or goes back to a file
// from live sound.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/top/sample_line.h"

namespace zephyra {

/// Message thread.
class SampleView final : public ScreenButton {
public:
    explicit SampleView(ScreenContext& context);

    void show(const SampleShown& shown, const LayoutMeasures& measures, double scale);
    /// Of its texts, pixels.
    int textWidth() const noexcept { return textWidth_; }

protected:
    void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) override;

private:
    std::string sentence() const override;
    int measured() const;
    std::string secondLine() const { return shown_.isMissing ? "missing" : shown_.facts; }

    SampleShown shown_;
    LayoutMeasures measures_{};
    double scale_ = 0.0;
    int textWidth_ = 0;
};

} // namespace zephyra

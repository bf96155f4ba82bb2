// PresetButton: the preset's name and bank; a press opens the menu of presets, arrows step.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/top/preset_line.h"

namespace zephyra {

/// Message thread.
class PresetButton final : public ScreenButton {
public:
    explicit PresetButton(ScreenContext& context);

    void show(const PresetShown& shown, const LayoutMeasures& measures, double scale);
    /// Left or right arrow: -1, +1.
    std::function<void(int by)> stepped = {};

    /// Of its texts, pixels.
    int textWidth() const noexcept { return textWidth_; }

protected:
    bool takeKey(const juce::KeyPress& key) override;
    void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) override;

private:
    int measured() const;

    PresetShown shown_;
    LayoutMeasures measures_{};
    double scale_ = 0.0;
    int textWidth_ = 0;
};

} // namespace zephyra

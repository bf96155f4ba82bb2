// PresetButton: the preset's name and bank; a press opens the menu of presets.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/top/preset_line.h"

namespace zephyra {

/// Message thread.
class PresetButton final : public ScreenButton {
public:
    explicit PresetButton(ScreenContext& context);

    void show(const PresetShown& shown, const LayoutMeasures& measures);
    /// Of its texts, pixels.
    int textWidth(double scale) const;

protected:
    void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) override;

private:
    PresetShown shown_;
    LayoutMeasures measures_{};
};

} // namespace zephyra

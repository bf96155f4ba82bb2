// FootTabButton: a drawer's name; underlined while that is open.
#pragma once

#include "screens/draw/screen_button.h"

namespace zephyra {

/// Message thread.
class FootTabButton final : public ScreenButton {
public:
    using ScreenButton::ScreenButton;

    void show(const std::string& title, double pixels, bool isOpen);

protected:
    void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) override;

private:
    std::string title_;
    double pixels_ = 12.0;
    bool isOpen_ = false;
};

} // namespace zephyra

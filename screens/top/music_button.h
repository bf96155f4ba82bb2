// MusicButton: the tempo; a press taps it, a drag and the wheel move it. BarView: bar and beat.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/top/music_line.h"

namespace zephyra {

/// Message thread.
class MusicButton final : public ScreenButton {
public:
    MusicButton(ScreenContext& context, MusicLine& line);

    void show(const LayoutMeasures& measures);

    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event,
                        const juce::MouseWheelDetails& wheel) override;

protected:
    bool takeKey(const juce::KeyPress& key) override;
    void paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color sign) override;

private:
    MusicLine& line_;
    MusicShown shown_;
    LayoutMeasures measures_{};
    bool drags_ = false;
};

/// Nothing where no host tells of bars. Message thread.
class BarView final : public ScreenControl {
public:
    explicit BarView(ScreenContext& context);

    void show(const MusicShown& shown, const LayoutMeasures& measures, double scale);

    void paint(juce::Graphics& graphics) override;

private:
    std::string sentence() const override;

    MusicShown shown_;
    LayoutMeasures measures_{};
    double scale_ = 1.0;
};

} // namespace zephyra

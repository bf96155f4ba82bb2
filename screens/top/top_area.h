// TopArea: transport, preset, sample, edits, tempo.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/draw/screen_button.h"
#include "screens/model/top/top_boxes.h"
#include "screens/model/top/transport.h"
#include "screens/top/music_button.h"
#include "screens/top/preset_button.h"
#include "screens/top/sample_view.h"

#include <array>

namespace zephyra {

/// Message thread.
class TopArea final : public ScreenArea {
public:
    explicit TopArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;

private:
    void wireTransport();
    void wirePreset();
    void show();
    void place();
    void openPresetMenu();

    Transport transport_;
    PresetLine preset_;
    SampleLine sample_;
    MusicLine music_;

    ScreenLayout layout_;
    TopWishes wishes_;
    TopBoxes boxes_;

    std::array<ScreenButton, kTransportButtons> buttons_;
    ScreenButton previous_, next_;
    PresetButton presetName_;
    SampleView sampleName_;
    ScreenButton locate_;
    MusicButton tempo_;
    BarView bar_;
    ScreenButton settings_;
};

} // namespace zephyra

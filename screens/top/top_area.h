// TopArea: transport, preset, sample, edits, tempo.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/draw/screen_button.h"
#include "screens/model/top/edit_line.h"
#include "screens/model/top/top_boxes.h"
#include "screens/model/top/transport.h"
#include "screens/top/music_button.h"
#include "screens/top/preset_button.h"
#include "screens/top/sample_view.h"

#include <array>

namespace zephyra {

/// Message thread.
class TopArea final : public juce::Component, public ScreenArea {
public:
    explicit TopArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;

private:
    void wireTransport();
    void wirePreset();
    void wireEdits();
    void show();
    void showButtons();
    void place();
    void placeButtons();
    Box boxOf(const juce::Component& part) const; ///< in the window
    void openMenu(const juce::Component& below, std::vector<MenuRow> rows);

    ScreenButton& button(TransportButton which) {
        return buttons_[static_cast<std::size_t>(which)];
    }
    ScreenButton& button(EditButton which) { return editButtons_[static_cast<std::size_t>(which)]; }

    /// Of signs and words, against their size in the regular step.
    double large() const { return layout_.measures.buttonSize / 32.0; }

    ScreenContext& context_;
    Transport transport_;
    PresetLine preset_;
    SampleLine sample_;
    MusicLine music_;
    EditLine edits_;

    ScreenLayout layout_;
    TopWishes wishes_;
    TopBoxes boxes_;

    std::array<ScreenButton, kTransportButtons> buttons_; // in the order of TransportButton
    ScreenButton previous_, next_;
    PresetButton presetName_;
    SampleView sampleName_;
    ScreenButton locate_;
    std::array<ScreenButton, kEditButtons> editButtons_; // in the order of EditButton
    MusicButton tempo_;
    BarView bar_;
    ScreenButton settings_;
};

} // namespace zephyra

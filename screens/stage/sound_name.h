// SoundName: the sound's name on the stage, where the top has no room for it; a press does what one
// of the top's name does.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/top/sample_line.h"
#include "screens/stage/stage_scene.h"

#include <string>

namespace zephyra {

/// The letters belong to the stage's marks, which bars of grains cross; this is their hit area, a
/// line below them while a hand is near, and the frame of the keyboard. Message thread.
class SoundName final : public ScreenButton {
public:
    explicit SoundName(ScreenContext& context);

    /// To where the name stands now. Letters are measured only when something of that changed.
    void follow(const StageScene& scene);

    void paint(juce::Graphics& graphics) override;

private:
    /// What the name's box is made of.
    struct Followed {
        std::string name;
        ScreenLayout layout;
        int start = -1; // of the region, in pixels
        bool operator==(const Followed&) const = default;
    };

    SampleLine line_;
    Followed followed_;
};

} // namespace zephyra

// PictureScene: an instance that plays and its window, without a display.
#pragma once

#include "screens/picture/picture_window.h"
#include "screens/zephyra_screen.h"

#include <string_view>
#include <vector>

namespace zephyra {

/// Plays as a bounce does, so that the same picture comes out every time. Message thread.
class PictureScene {
public:
    static constexpr double kRate = 48000.0;
    static constexpr std::uint32_t kBlock = 480;
    static constexpr double kFrame = 1.0 / 60.0; ///< seconds

    struct Size {
        int width, height;
        double zoom = 1.0;
    };

    /// plugin is prepared for kRate and kBlock, and outlives it.
    PictureScene(PluginInstance& plugin, const Size& size);

    PluginInstance& plugin() { return plugin_; }
    ZephyraScreen& screen() { return screen_; }
    PictureWindow& window() { return window_; }

    /// Where the host's music stands, in quarters, and whether it moves; at first it does.
    void standAt(double beats) { beats_ = beats; }
    /// Renders so many seconds, with a frame of the window each 60th. Plucked notes go in. Answers
    /// the loudest sample.
    float play(double seconds);
    /// Frames in which nothing is rendered.
    void frames(int count);
    /// The last frame once more: nothing has moved since.
    void frameAgain() { screen_.frame(lastFrame_); }

    /// The part of the window of that kind, or null; hidden ones count.
    template <typename Part>
    Part* find() {
        return dynamic_cast<Part*>(findIn(
            screen_, [](juce::Component& one) { return dynamic_cast<Part*>(&one) != nullptr; }));
    }
    /// What is shown and has that title, or null.
    juce::Component* findTitled(std::string_view title);
    /// The middle of what stands in the window, in its pixels.
    juce::Point<float> middleOf(const juce::Component& part) const;
    /// Where the knob's number is.
    juce::Point<float> numberOf(ControlId id);
    KnobCell& knob(ControlId id) { return *find<PathArea>()->knobCell(id); }

    /// What a hand does to the system, as MAIN.
    template <typename Hand>
    auto asMain(Hand&& hand) {
        return screen_.context().source.asMain(std::forward<Hand>(hand));
    }

private:
    void frame();
    static juce::Component* findIn(juce::Component& all,
                                   const std::function<bool(juce::Component&)>& isIt);

    PluginInstance& plugin_;
    ZephyraScreen screen_;
    PictureWindow window_;
    std::vector<float> input_, left_, right_;
    double beats_ = 0.0, now_ = 0.0, nextFrame_ = 0.0, lastFrame_ = 0.0;
};

} // namespace zephyra

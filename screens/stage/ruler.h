// Ruler: the times below the stage, the region on them, and the scan's flag.
#pragma once

#include "screens/stage/stage_scene.h"

#include <juce_graphics/juce_graphics.h>

#include <string>
#include <vector>

namespace zephyra {

/// Draws into the strip that is a ruler's height high below the stage; pixels count from the
/// stage's left and top. Message thread.
class Ruler {
public:
    static constexpr double kGrip = 10, kHoveredGrip = 14, kHit = 24; ///< units wide

    /// Follows scene; what is to be painted again, empty where nothing is.
    juce::Rectangle<int> follow(const StageScene& scene);
    void paint(juce::Graphics& graphics, const StageScene& scene) const;

    /// The strip.
    static Box box(const StageScene& scene);
    /// Where a handle's grip stands: inside the region at its edge.
    static Box grip(const StageScene& scene, bool isStart, double wide);

private:
    /// What the strip shows; the same again is not painted.
    struct Shown {
        StageView view{};
        double regionStart = -1, regionEnd = -1, seconds = 0;
        bool isLive = false, isSynced = false;
        Box strip{};
        bool operator==(const Shown&) const = default;
    };
    struct Flag {
        Box box{};
        std::string text;
        bool isAccent = true;
        bool operator==(const Flag&) const = default;
    };
    /// A part of the trail on the region's bar.
    struct Tail {
        int x, width;
        float light; ///< 0..1
    };
    static std::vector<Tail> tailOf(const StageScene& scene);
    static Flag flagOf(const StageScene& scene);
    void paintScale(juce::Graphics& graphics, const StageScene& scene) const;
    void paintRegion(juce::Graphics& graphics, const StageScene& scene) const;
    void paintFlag(juce::Graphics& graphics, const StageScene& scene) const;

    Shown shown_;
    Flag flag_;
    std::vector<Tail> tail_;
};

} // namespace zephyra

// StageCanvas: the stage as one picture, drawn again where something moved.
#pragma once

#include "screens/model/stage/dirty_boxes.h"
#include "screens/stage/grain_bar.h"
#include "screens/stage/stage_ground.h"
#include "screens/stage/trail_light.h"

#include <cstdint>
#include <vector>

namespace zephyra {

/// Message thread.
class StageCanvas {
public:
    StageGround ground;

    /// The ground was drawn anew, so that all is to be composed.
    void renew(const StageScene& scene);
    /// Places what moves; the rectangles that differ from the last time.
    const std::vector<Box>& follow(const StageScene& scene, const GrainCloud& grains);
    /// What graphics asks for of it as it was followed last.
    void paint(juce::Graphics& graphics, const StageScene& scene);
    /// The same of box, into its rows.
    void paint(const PixelRows& rows, const Box& box, const StageScene& scene);

private:
    /// What one thing drew: the same again is not drawn.
    struct Item {
        std::uint64_t id, looks;
        Box box;
        bool operator==(const Item&) const = default;
        bool operator<(const Item& other) const;
    };
    struct Placed {
        ShownGrain grain;
        GrainBar bar;
    };

    void place(const StageScene& scene, const GrainCloud& grains);
    void placeGrain(const StageScene& scene, const ShownGrain& grain, const GrainGlow& glow,
                    std::vector<Placed>& into);
    void placeScan(const StageScene& scene);
    void followGlows(const StageScene& scene, const GrainCloud& grains);
    void addItem(std::uint64_t id, std::uint64_t looks, const Box& box);
    void findChanges();
    void drawPicture(const Box& box, const StageScene& scene);
    void compose(const Pixels& pixels, const StageScene& scene) const;
    void copyGround(const Pixels& pixels, const StageScene& scene) const;
    void drawMoving(const Pixels& pixels, const StageScene& scene) const;
    void drawRail(const Pixels& pixels, const StageScene& scene) const;
    void drawScan(const Pixels& pixels, const StageScene& scene) const;

    juce::Image picture_; // where it cannot be drawn into the window itself
    std::vector<Item> items_, before_;
    std::vector<Placed> sounding_, ended_;
    std::vector<GrainGlow> glows_, glowsBefore_;
    double bandScan_ = 0, bandReach_ = 0; // the jitter's reach as it was shown last
    Box band_, bandBefore_;
    TrailLight trail_;
    DirtyBoxes dirty_;
    bool all_ = true;
};

} // namespace zephyra

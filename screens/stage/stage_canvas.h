// StageCanvas: the stage as one picture, composed anew where something moved.
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
    /// Composes what differs from the last picture; the rectangles that changed.
    const std::vector<Box>& compose(const StageScene& scene, const GrainCloud& grains);

    const juce::Image& picture() const noexcept { return picture_; }

private:
    /// What one thing drew: the same again is not drawn.
    struct Item {
        std::uint64_t id, looks;
        Box box;
        bool operator==(const Item&) const = default;
    };
    struct Placed {
        const ShownGrain* grain;
        GrainBar bar;
    };

    void place(const StageScene& scene, const GrainCloud& grains);
    void addItem(std::uint64_t id, std::uint64_t looks, const Box& box);
    void findChanges();
    void composeBox(const StageScene& scene, const Box& box);
    void copyGround(const StageScene& scene, const Box& box);
    void drawRail(const Pixels& pixels, const StageScene& scene) const;
    void drawScan(const Pixels& pixels, const StageScene& scene) const;

    juce::Image picture_;
    std::vector<Item> items_, before_;
    std::vector<Placed> sounding_, ended_;
    TrailLight trail_;
    DirtyBoxes dirty_;
    bool all_ = true;
};

} // namespace zephyra

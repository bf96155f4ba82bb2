// TrailLight: the light of the scan's trail, white on the sound and red over the stage's height.
#pragma once

#include "screens/stage/pixels.h"
#include "screens/stage/stage_scene.h"
#include "screens/stage/wave_strip.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace zephyra {

/// It covers much and moves always, so it is laid on as bytes, many at once. Message thread.
class TrailLight {
public:
    /// One step of the trail drew this: the same again is not drawn.
    using Hear = std::function<void(std::uint64_t step, std::uint64_t looks, const Box& box)>;

    void place(const StageScene& scene, std::span<const WaveExtent> extents, const Hear& hear);
    void draw(const Pixels& pixels) const;

private:
    void light(int x, int white, int red, const WaveExtent& at);

    // Four of each a column, as the bytes of its pixels stand.
    std::vector<std::int16_t> white_, red_, redTint_, top_, bottom_;
    int left_ = 0, right_ = 0, redLeft_ = 0, redRight_ = 0; // columns
    int whiteTop_ = 0, whiteBottom_ = 0;                    // rows
};

} // namespace zephyra

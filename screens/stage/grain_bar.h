// GrainBar: where a grain stands in pixels, and how its bar, its light and its fading line look.
#pragma once

#include "screens/stage/pixels.h"
#include "screens/stage/stage_scene.h"
#include "screens/stage/wave_strip.h"

#include <span>

namespace zephyra {

/// What follows a head at every SlowTick: how bright is what was read, and the light on the sound.
struct GrainGlow {
    std::uint64_t id = 0; ///< of the grain
    double through = 0;   ///< 0..1
    float envelope = 0;
};

/// The bar lies over the place that is read: the part above its axis is as high as the grain is
/// loud on the left, the part below as on the right. Bars are at least as long as they are high.
/// Plain data.
struct GrainBar {
    double left = 0, right = 0; ///< pixels
    double head = 0;
    double axis = 0; ///< the row between the ears
    double above = 0, below = 0;
    double glowHead = 0, glowEnvelope = 0; ///< as GrainGlow has them
    Box box;                               ///< all that it draws on its rows, wherever its head is
    Box headBox;                           ///< what moves with the head
    Box readBox;                           ///< what was read
    Box lightBox;                          ///< on the sound
    Box endedBox;                          ///< the line that it leaves
};

/// Units: a bar's height at most, what a silent ear leaves of its half, and what lies between
/// stacked ones of usual height.
inline constexpr double kMostBar = 14.0, kLeastHalf = 1.5, kStackedBar = 11.5;
/// Times its height that a bar is long at least.
inline constexpr double kLeastLengths = 1.8;

/// shift: whole sounds; a grain that reads over the end shows again at the beginning.
GrainBar placeBar(const StageScene& scene, const ShownGrain& grain, const GrainGlow& glow,
                  double shift, std::span<const WaveExtent> extents);

/// Each draws within pixels' clip.
void drawLight(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
               const GrainBar& bar, std::span<const WaveExtent> extents);
void drawBar(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
             const GrainBar& bar);
void drawEnded(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
               const GrainBar& bar);

/// How far one that ended has faded, 0 up to kFadeSteps.
inline constexpr int kFadeSteps = 10;
int fadeStep(const ShownGrain& grain);

/// A bar's row, by its stack and its pitch.
double axisOf(const StageScene& scene, const ShownGrain& grain);

} // namespace zephyra

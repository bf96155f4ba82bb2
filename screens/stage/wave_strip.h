// WaveExtent: how high each column of the sound stands on the stage.
#pragma once

#include "screens/model/stage/wave_pyramid.h"
#include "screens/stage/stage_scene.h"

#include <span>
#include <vector>

namespace zephyra {

/// Rows from the stage's top, with parts of pixels.
struct WaveExtent {
    float top = 0, bottom = 0;             ///< of the extremes
    float energyTop = 0, energyBottom = 0; ///< of the energy
};

/// The extents of a stage's columns. peak: of the sound as it was loaded; a sound whose peak was
/// not chosen fills the stage at the power of two above it. Message thread.
void placeColumns(const StageScene& scene, std::span<const WaveColumn> columns, float peak,
                  std::vector<WaveExtent>& extents);

} // namespace zephyra

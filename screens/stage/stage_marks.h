// drawGrid and its kin: the grid of time and pitch on the stage, its names, and what is outside the
// region.
#pragma once

#include "screens/stage/pixels.h"
#include "screens/stage/stage_scene.h"

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

// Message thread; each draws within the clip that it is given.

/// Lines of seconds, or the cells of a synced scan, and lines of semitones.
void drawGrid(const StageScene& scene, const Pixels& pixels);
/// The semitones at the left, the cells' numbers, and the sound's name where the top has no room.
void drawMarkTexts(const StageScene& scene, juce::Graphics& graphics);
/// The sound's name as the marks have it; empty where they have none.
std::string nameOnStage(const StageScene& scene);
/// Where its letters stand; empty for none.
Box nameBox(const StageScene& scene);
/// Darkens what lies outside the region.
void darkenOutside(const StageScene& scene, const Pixels& pixels);

} // namespace zephyra

// StageScene: what the painters of the stage look at, and where it stands in pixels.
#pragma once

#include "screens/model/screen_layout.h"
#include "screens/model/slow_tick.h"
#include "screens/model/stage/hold_mark.h"
#include "screens/model/stage/pitch_axis.h"
#include "screens/model/stage/scan_trail.h"
#include "screens/model/stage/stage_contents.h"
#include "screens/model/stage/stage_view.h"

namespace zephyra {

/// Pixels count from the stage's left and top. Message thread.
struct StageScene {
    ScreenLayout layout{};
    StageContents contents{};
    StageView view{};
    PitchAxis axis{};
    ScanTrail trail{};
    HoldMark hold{};
    SlowTick slow{};               ///< of what glows
    SlowTick flagTick{1.0 / 30.0}; ///< of the scan's flag, which is text
    SlowTick trailTick{0.1};       ///< of the trail, whose light covers the stage's height
    bool reducedMotion = false;

    int width() const { return layout.stage.width; }
    int height() const { return layout.stage.height; }
    int px(double units) const { return layout.px(units); }
    double units(double count) const { return count * layout.scale; }

    double x(double fraction) const { return view.placeOf(fraction) * width(); }
    double y(double semitones) const { return axis.heightOf(semitones) * height(); }
};

} // namespace zephyra

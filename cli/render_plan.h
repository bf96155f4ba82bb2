// makeRenderPlan: from what was asked for and what the source is to what is rendered.
#pragma once

#include "cli/offline_render.h"
#include "cli/render_options.h"
#include "platform/result.h"
#include "platform/sound_file.h"

#include <array>

namespace zephyra {

/// The displayed value of every control, by ControlId.
using ControlValues = std::array<float, kControlCount>;

/// Seconds that the scan stands behind the newest frame of live input where nothing else is asked
/// for: at speed 1 it would soon run along the seam between the newest and the oldest sound.
inline constexpr double kLiveDistance = 0.2;

/// What the controls stand at when the output has reached frame, all settings of that block and
/// before applied; frame 0 gives the values at the start.
ControlValues controlsAt(const RenderPlan& plan, std::uint64_t frame);

/// Fills in what the options leave open: the source's rate and length, the echo's tail, a seed from
/// the clock, where the scan of live input stands. A failure is a wrong usage: options that do not
/// go with this source.
Result<RenderPlan> makeRenderPlan(const RenderOptions& options, const SoundFileInfo& source);

} // namespace zephyra

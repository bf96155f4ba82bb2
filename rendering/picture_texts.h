// pictureTexts: what a render's picture says in words.
#pragma once

#include "pictures/grain_map.h"
#include "pictures/render_picture.h"
#include "rendering/output/output_file.h"
#include "rendering/render_plan.h"
#include "rendering/rendered_block.h"

#include <string>
#include <vector>

namespace zephyra {

/// title is the source's name; statistics and file tell what else was measured. MAIN, as the rest.
PictureTexts pictureTexts(std::string title, const RenderPlan& plan,
                          const RenderStatistics& statistics, const OutputFile& file);

/// What the plan changes or stops on the way, by time.
std::vector<EventMark> eventsOf(const RenderPlan& plan);

/// "20 Hz" of a linear value of the control; three digits say enough of one on its way.
std::string passingValueText(ControlId control, float linear);

} // namespace zephyra

// jsonReport and textReport: what `zephyra render` tells about what it did.
#pragma once

#include "rendering/offline_render.h"
#include "rendering/output/output_file.h"
#include "rendering/render_request.h"
#include "rendering/render_source.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

/// All that a report is made of.
struct RenderOutcome {
    const RenderRequest& request;
    const RenderPlan& plan;
    const RenderStatistics& statistics;
    const OutputFile& file;
    double gain;                   ///< that the finished sound was multiplied by
    std::size_t recordedPositions; ///< of --record-scrub
    bool takeIsCut;                ///< it had no room for all of them
    std::string sample = {};       ///< the preset's sample, where it is what was played
};

// Any thread but RENDER.

/// A JSON object for scripts, with a line end; notices are those of render_notices.h.
std::string jsonReport(const RenderOutcome& outcome, const ReadSource& read,
                       const std::vector<std::string>& notices);

/// Two lines for people, each with a line end.
std::string textReport(const RenderOutcome& outcome);

/// The first of them.
std::string outputLine(const RenderOutcome& outcome);

/// "rms -18.2 dB, peak -3.1 dB".
std::string levelText(const OutputFile& file);

} // namespace zephyra

// noticesOf: what a listener or a user should know about a render, a line each.
#pragma once

#include "cli/render/render_report.h"
#include "rendering/render_source.h"

#include <string>
#include <vector>

namespace zephyra {

/// What was odd in the files that were read, in the source and in what came out of it; none of a
/// render that is as it should be. Begins with the file concerned where there is one. MAIN.
std::vector<std::string> noticesOf(const RenderOutcome& outcome, const ReadSource& read);

} // namespace zephyra

// renderFile: one render from its options to its files.
#pragma once

#include "cli/terminal/exit_code.h"
#include "cli/terminal/progress_bar.h"
#include "library/known_files.h"
#include "pictures/render_picture.h"
#include "platform/text/log.h"
#include "rendering/render_request.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

/// How it ended.
struct RenderEnd {
    ExitCode code = ExitCode::success;
    std::string message = {};              ///< of a failure, one line
    std::string text = {}, json = {};      ///< what was rendered, for people and for scripts
    std::string line = {}, levels = {};    ///< the same in one line; how loud it is
    std::vector<std::string> notices = {}; ///< what people should know, a line each
};

/// Renders and writes every file that the request names, each whole or not at all. told gets the
/// share of the render that is done, 0 to 1; it may be empty. What known knows is not read again.
/// log gets what the render's instance reports, standard error where it is empty; seen, unless it
/// is empty, the complete picture. Prints nothing else but the bar. MAIN.
RenderEnd renderFile(const RenderRequest& request, const Folders& folders, const KnownFiles& known,
                     ProgressBar::Shown bar, const std::function<void(double share)>& told = {},
                     LogSink log = {}, const std::function<void(const RenderPicture&)>& seen = {});

} // namespace zephyra

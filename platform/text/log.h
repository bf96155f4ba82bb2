// logLine: the system's log, a line at a time.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zephyra {

using LogSink = std::function<void(std::string_view)>;

/// Writes one line (without a line end of its own) to the log: standard error, unless a sink was
/// set. MAIN or WORKER, never RENDER. Lines of several threads do not mix.
void logLine(std::string_view line);

/// Sends log lines to sink from now on; an empty one brings standard error back. Returns the sink
/// set before, so that a test can restore it. Any thread but RENDER.
LogSink setLogSink(LogSink sink);

} // namespace zephyra

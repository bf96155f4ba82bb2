// readAutomation: a host's automation from a CSV file.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"
#include "stream/control_ranges.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// One point of automation. Between a parameter's points the value stands, or runs straight (in the
/// control's linear units, as hosts draw it) towards a ramp's point.
struct AutomationPoint {
    double seconds; ///< of the output
    ControlId parameter;
    float linear; ///< the value reached, in linear units
    bool ramp;    ///< it is reached in a straight line from the point before
};

/// Reads text, a line each: time, parameter, displayed value, and "step" (the default) or "ramp". A
/// time is seconds ("1.5") or beats of tempo ("4b"). Empty lines and those that begin with # are
/// skipped, as is a first line that begins with "time". The points come out by time, those of one
/// time in the file's order. Failures name the line; where is what they call the text.
Result<std::vector<AutomationPoint>> parseAutomation(std::string_view text, double tempo,
                                                     const std::string& where);

/// The same of a file, or of what streams took by that name, of at most 16 MiB.
Result<std::vector<AutomationPoint>> readAutomation(const std::filesystem::path& path, double tempo,
                                                    const StreamedFiles& streams = {});

} // namespace zephyra

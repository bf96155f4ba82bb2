#include "rendering/events/automation_file.h"

#include "audiounit/control_text.h"
#include "platform/files/file_name.h"
#include "platform/files/small_file.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "rendering/events/text_lines.h"
#include "rendering/events/time_order.h"

#include <cmath>
#include <optional>

namespace zephyra {

namespace {

/// The cells of a line, without blanks and quotes around them.
std::vector<std::string_view> cells(std::string_view line) {
    std::vector<std::string_view> all;
    for (;;) {
        const std::size_t comma = line.find(',');
        std::string_view cell = trimmed(line.substr(0, comma));
        if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"')
            cell = cell.substr(1, cell.size() - 2);
        all.push_back(cell);
        if (comma == std::string_view::npos) return all;
        line.remove_prefix(comma + 1);
    }
}

Result<double> readTime(std::string_view cell, double tempo) {
    const std::optional<TypedTime> time = parseTime(cell);
    if (!time)
        return Failure{"a time is seconds from 0 up, as in 2.5 or 1:30, or beats as in 4b, not " +
                       inQuotes(cell)};
    const double seconds = time->seconds(tempo);
    if (std::isfinite(seconds)) return seconds;
    return Failure{inQuotes(cell) + " is more than can be counted; write fewer beats"};
}

Result<AutomationPoint> readPoint(std::string_view line, double tempo) {
    const std::vector<std::string_view> parts = cells(line);
    if (parts.size() != 3 && parts.size() != 4)
        return Failure{"a line is time,parameter,value,step or ramp, as in 2.5,Density,80,ramp"};
    const Result<double> seconds = readTime(parts[0], tempo);
    if (!seconds) return Failure{seconds.message()};
    const Result<ControlId> parameter = parseParameterName(parts[1]);
    if (!parameter) return Failure{parameter.message() + " (`zephyra parameters` lists all)"};
    const Result<float> value = parseControlValue(parameter.value(), parts[2]);
    if (!value) return Failure{value.message()};
    const std::string kind = parts.size() == 4 ? plainName(parts[3]) : "step";
    if (kind != "step" && kind != "ramp")
        return Failure{"a point is a step or a ramp, not " + inQuotes(parts[3])};
    const ControlRange& range = controlRange(parameter.value());
    if (kind == "ramp" && range.kind == ControlKind::switching)
        return Failure{std::string(range.name) + " is a switch, which knows no ramp; write step"};
    return AutomationPoint{seconds.value(), parameter.value(),
                           linearFromDisplayed(range, value.value()), kind == "ramp"};
}

} // namespace

Result<std::vector<AutomationPoint>> parseAutomation(std::string_view text, double tempo,
                                                     const std::string& where) {
    std::vector<AutomationPoint> points;
    TextLines lines(text);
    while (const auto line = lines.next()) {
        if (points.empty() && plainName(*line).starts_with("time")) continue;
        const Result<AutomationPoint> point = readPoint(*line, tempo);
        if (!point)
            return Failure{where + ", line " + std::to_string(lines.number()) + ": " +
                           point.message()};
        points.push_back(point.value());
    }
    sortByTime(points);
    return points;
}

Result<std::vector<AutomationPoint>> readAutomation(const std::filesystem::path& path, double tempo,
                                                    const StreamedFiles& streams) {
    const Result<std::string> text = readSmallFile(path, streams);
    if (!text) return Failure{text.message()};
    return parseAutomation(text.value(), tempo, inputTitle(path));
}

} // namespace zephyra

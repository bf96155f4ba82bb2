#include "rendering/events/take_file.h"

#include "platform/files/small_file.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/text_numbers.h"
#include "rendering/events/text_lines.h"

#include <optional>
#include <system_error>

namespace zephyra {

namespace {

Failure notWritten(const std::filesystem::path& path, std::error_code error) {
    return {path.string() + ": the take cannot be written (" + error.message() +
            "); choose a folder with room that may be written to"};
}

} // namespace

Result<std::vector<float>> parseTake(std::string_view text, const std::string& where) {
    std::vector<float> positions;
    TextLines lines(text);
    bool first = true;
    while (const auto line = lines.next()) {
        const bool heading = first && plainName(*line) == "position";
        first = false;
        if (heading) continue;
        const std::string at = where + ", line " + std::to_string(lines.number()) + ": ";
        const std::optional<double> position = parseNumber(*line);
        if (!position || *position < 0 || *position > 1)
            return Failure{at + "a position is a fraction of the sound from 0 to 1, not " +
                           inQuotes(*line)};
        if (positions.size() == kMostTakePoints)
            return Failure{at + "a take has at most 1800 positions (120 s); leave out the rest"};
        positions.push_back(static_cast<float>(*position));
    }
    if (positions.size() < kLeastTakePoints)
        return Failure{where +
                       ": a take has at least 2 positions, one a line, 15 a second; this "
                       "one has " +
                       std::to_string(positions.size())};
    return positions;
}

Result<std::vector<float>> readTake(const std::filesystem::path& path,
                                    const StreamedFiles& streams) {
    const Result<std::string> text = readSmallFile(path, streams);
    if (!text) return Failure{text.message()};
    return parseTake(text.value(), inputTitle(path));
}

std::string takeText(std::span<const float> positions) {
    std::string text = "# where the scan stood, 15 times a second\nposition\n";
    for (const float position : positions) text += formatNumber(position) + "\n";
    return text;
}

Result<void> TakeFile::open(const std::filesystem::path& path) {
    path_ = path;
    const std::error_code error = file_.open(path);
    return error ? notWritten(path_, error) : Result<void>();
}

Result<void> TakeFile::save(std::span<const float> positions) {
    const std::string text = takeText(positions);
    std::error_code error = file_.write(std::as_bytes(std::span(text)));
    if (!error) error = file_.commit();
    return error ? notWritten(path_, error) : Result<void>();
}

} // namespace zephyra

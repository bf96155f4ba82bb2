#include "stream/sample_report.h"

#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

std::string otherSoundLine(const SampleReport& report) {
    if (!report.isOtherSound) return {};
    return shownFile(report.file) +
           " holds another sound than the state was made with, and is played all the same";
}

std::vector<std::string> linesOf(const SampleReport& report) {
    if (report.end != SampleEnd::taken && report.end != SampleEnd::missing) return {};
    std::vector<std::string> lines;
    const std::string asked = shownFile(report.asked);
    if (report.file.empty()) lines.push_back("Warning, no file exist at path: " + asked + "!");
    for (const StateFinding& finding : report.findings) lines.push_back(lineOf(finding));
    if (report.road == SampleRoad::embedded)
        lines.push_back(asked + ": the copy in the state is played");
    for (std::string line : {otherSoundLine(report), report.notEmbedded})
        if (!line.empty()) lines.push_back(std::move(line));
    return lines;
}

} // namespace zephyra

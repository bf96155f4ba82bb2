#include "main_view/restore_report.h"

#include <iterator>

namespace zephyra {

std::vector<std::string> linesOf(const RestoreReport& report) {
    std::vector<std::string> lines;
    for (const StateFinding& finding : report.findings) lines.push_back(lineOf(finding));
    if (report.selection && *report.selection != QuickPresetsManager::Shown::preset)
        lines.emplace_back(QuickPresetsManager::whatIsMissing(*report.selection));
    std::ranges::move(linesOf(report.sample), std::back_inserter(lines));
    return lines;
}

} // namespace zephyra

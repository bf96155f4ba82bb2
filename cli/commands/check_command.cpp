#include "cli/commands/commands.h"

#include "cli/terminal/interrupt.h"
#include "cli/terminal/json_text.h"
#include "cli/terminal/progress_bar.h"
#include "library/bank_check.h"
#include "library/bank_place.h"
#include "platform/files/folder_entries.h"
#include "platform/files/whole_file.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "presets/preset_names.h"
#include "presets/record_check.h"

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

/// What was found out about the file, and done.
struct Report {
    CheckedBank checked;
    std::size_t presets = 0;             ///< of a bank with nothing wrong
    std::optional<fs::path> mended = {}; ///< the copy, once it is written
};

bool isFine(const Report& report) {
    return report.checked.isWhole && report.checked.findings.empty();
}

std::string lineOf(const BankFinding& finding) {
    return onOneLine(finding.key.empty() ? finding.text : finding.key + ": " + finding.text) + "\n";
}

std::string plainText(const Report& report) {
    if (isFine(report)) return counted(report.presets, "preset") + ", nothing wrong\n";
    std::string text;
    for (const BankFinding& finding : report.checked.findings) text += lineOf(finding);
    if (!report.mended) return text;
    const MendedBank& mended = *report.checked.mended;
    text += "\n";
    for (const std::string& note : mended.notes) text += onOneLine(note) + "\n";
    return text + shownFile(*report.mended) + " holds " + counted(mended.bank.size(), "preset") +
           (mended.lost > 0 ? "; " + std::to_string(mended.lost) + " could not be saved\n" : "\n");
}

std::string jsonText(const fs::path& file, const Report& report) {
    Json findings = Json::array();
    for (const BankFinding& finding : report.checked.findings)
        findings.push_back(
            {{"key", finding.key}, {"text", finding.text}, {"fatal", finding.fatal}});
    Json json = {{"file", file.string()}, {"findings", std::move(findings)}};
    if (!report.checked.isWhole) json["interrupted"] = true;
    if (isFine(report)) json["presets"] = report.presets;
    if (report.mended)
        json["mended"] = {{"file", report.mended->string()},
                          {"presets", report.checked.mended->bank.size()},
                          {"lost", report.checked.mended->lost},
                          {"notes", report.checked.mended->notes}};
    return textOfJson(json);
}

std::string countOf(const std::vector<BankFinding>& findings) {
    if (findings.size() <= kMostFindings) return counted(findings.size(), "fault");
    return "more than " + counted(kMostFindings, "fault");
}

/// Writes the mended copy, never over a file, and answers where.
Result<fs::path> repair(const fs::path& file, const std::optional<MendedBank>& mended) {
    if (!mended) return Failure{shownFile(file) + " cannot be mended: no preset was found in it"};
    const fs::path copy =
        file.parent_path() /
        withSuffix(std::string(stemOf(file.filename().string())), " (mended).zephyra");
    const auto written = createBank(copy, mended->bank);
    if (!written) return Failure{written.message()};
    if (!written.value())
        return Failure{shownFile(copy) + " is there already; rename it or take it away"};
    return copy;
}

/// What was typed, or the file of the bank that is called so.
fs::path bankFile(const std::string& typed, const Folders& folders) {
    std::error_code ignored;
    if (fs::exists(typed, ignored)) return typed;
    BankFolder banks(folders);
    const auto bank = findBank(banks, typed);
    return bank ? banks.locate(bank.value()) : fs::path(typed);
}

CheckedBank checkFile(std::vector<std::byte> bytes, const fs::path& file, const Folders& folders) {
    ProgressBar bar("checking " + shownFile(file.filename()), ProgressBar::Shown::onTerminal);
    CheckedBank checked =
        checkBank(std::move(bytes), makeRecordCheck(folders), [&bar](double share) {
            bar.update(share);
            return goesOn();
        });
    checked.isWhole = checked.isWhole && !interrupted(); // also within the last one
    return checked;
}

} // namespace

ExitCode runCheck(const CommandContext& context, const CheckRequest& request) {
    if (request.file.empty())
        return endWith(ExitCode::wrongUsage, "FILE is empty; name a bank's file");
    const fs::path file = bankFile(request.file, context.folders);
    auto whole = readWholeFile(file, kBankLimits.bytes);
    if (!whole) return endWith(ExitCode::failure, whole.message());

    Report report{checkFile(std::move(whole.value().bytes), file, context.folders)};
    const CheckedBank& checked = report.checked;
    const bool isMendable = checked.mended.has_value();
    if (checked.findings.empty() && isMendable) report.presets = checked.mended->bank.size();
    Result<fs::path> copy = Failure{};
    const bool repairs = request.repair && checked.isWhole && !checked.findings.empty();
    if (repairs) copy = repair(file, checked.mended);
    if (repairs && copy) report.mended = copy.value();
    const ExitCode told = printOut(request.json ? jsonText(file, report) : plainText(report));
    if (told == ExitCode::success && !checked.isWhole)
        return endWith(ExitCode::interrupted,
                       "interrupted; " + shownFile(file) + " was not checked to its end");
    if (told != ExitCode::success || checked.findings.empty() || report.mended) return told;
    if (repairs) return endWith(ExitCode::failure, copy.message());
    return endWith(ExitCode::failure,
                   shownFile(file) + " has " + countOf(checked.findings) +
                       (isMendable ? "; --repair writes a mended copy beside it"
                                   : "; no preset was found in it that could be saved"));
}

} // namespace zephyra

#include "cli/commands/commands.h"

#include "cli/terminal/interrupt.h"
#include "cli/terminal/json_text.h"
#include "library/bank_check.h"
#include "library/bank_place.h"
#include "platform/files/folder_entries.h"
#include "platform/files/whole_file.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "presets/record_check.h"

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

bool goOn() {
    return !interrupted();
}

std::string counted(std::size_t count, const char* one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

/// What was found out about the file, and done.
struct Report {
    bool isWhole = true; ///< false: the user stopped it, and more may be wrong
    std::size_t presets = 0;
    std::vector<BankFinding> findings;
    std::optional<fs::path> mended;
    std::vector<std::string> notes; ///< what the mended copy lacks
    std::size_t kept = 0, lost = 0;
};

std::string lineOf(const BankFinding& finding) {
    return onOneLine(finding.key.empty() ? finding.text : finding.key + ": " + finding.text) + "\n";
}

std::string plainText(const Report& report) {
    if (report.isWhole && report.findings.empty())
        return counted(report.presets, "preset") + ", nothing wrong\n";
    std::string text;
    for (const BankFinding& finding : report.findings) text += lineOf(finding);
    if (!report.mended) return text;
    text += "\n";
    for (const std::string& note : report.notes) text += onOneLine(note) + "\n";
    return text + shownFile(*report.mended) + " holds " + counted(report.kept, "preset") +
           (report.lost > 0 ? "; " + std::to_string(report.lost) + " could not be saved\n" : "\n");
}

std::string jsonText(const CheckRequest& request, const Report& report) {
    Json findings = Json::array();
    for (const BankFinding& finding : report.findings)
        findings.push_back(
            {{"key", finding.key}, {"text", finding.text}, {"fatal", finding.fatal}});
    Json json = {{"file", request.file}, {"findings", std::move(findings)}};
    if (!report.isWhole) json["interrupted"] = true;
    if (report.isWhole && report.findings.empty()) json["presets"] = report.presets;
    if (report.mended)
        json["mended"] = {{"file", report.mended->string()},
                          {"presets", report.kept},
                          {"lost", report.lost},
                          {"notes", report.notes}};
    return textOfJson(json);
}

std::string countOf(const std::vector<BankFinding>& findings) {
    if (findings.size() <= kMostFindings) return counted(findings.size(), "fault");
    return "more than " + counted(kMostFindings, "fault");
}

/// Writes the mended copy, never over a file.
Result<void> repair(const fs::path& file, std::span<const std::byte> bytes, const Folders& folders,
                    Report& report) {
    // Without the sample files: a preset whose sample is missing keeps its name, to be found again.
    auto mended = mendBank(bytes, makeRecordCheck(folders, SampleFiles::ignore, goOn));
    if (interrupted()) return {}; // what was not looked at could not be mended
    if (!mended) return Failure{shownFile(file) + " cannot be mended: no preset was found in it"};
    const fs::path copy =
        file.parent_path() /
        withSuffix(std::string(stemOf(file.filename().string())), " (mended).zephyra");
    const auto written = createBank(copy, mended->bank);
    if (!written) return Failure{written.message()};
    if (!written.value())
        return Failure{shownFile(copy) + " is there already; rename it or take it away"};
    report.mended = copy;
    report.notes = std::move(mended->notes);
    report.kept = mended->bank.size();
    report.lost = mended->lost;
    return {};
}

std::size_t presetsIn(std::span<const std::byte> bytes, const std::string& name) {
    const auto bank = readBank(bytes, name);
    return bank ? bank.value().size() : 0;
}

} // namespace

ExitCode runCheck(const CommandContext& context, const CheckRequest& request) {
    const fs::path file = request.file;
    if (file.empty()) return endWith(ExitCode::wrongUsage, "FILE is empty; name a bank's file");
    const auto whole = readWholeFile(file, kBankLimits.bytes);
    if (!whole) return endWith(ExitCode::failure, whole.message());
    const std::vector<std::byte>& bytes = whole.value().bytes;
    const Folders& folders = context.folders;

    Report report;
    report.findings = checkBank(bytes, makeRecordCheck(folders, SampleFiles::lookFor, goOn));
    if (report.findings.empty()) report.presets = presetsIn(bytes, request.file);
    Result<void> mended;
    if (request.repair && !report.findings.empty()) mended = repair(file, bytes, folders, report);
    report.isWhole = !interrupted() || report.mended;
    const ExitCode told = printOut(request.json ? jsonText(request, report) : plainText(report));
    if (told == ExitCode::success && !report.isWhole)
        return endWith(ExitCode::interrupted,
                       "interrupted; " + shownFile(file) + " was not checked to its end");
    if (told != ExitCode::success || report.findings.empty() || report.mended) return told;
    if (!mended) return endWith(ExitCode::failure, mended.message());
    return endWith(ExitCode::failure,
                   shownFile(file) + " has " + countOf(report.findings) +
                       (mendBank(bytes) ? "; --repair writes a mended copy beside it"
                                        : "; no preset was found in it that could be saved"));
}

} // namespace zephyra

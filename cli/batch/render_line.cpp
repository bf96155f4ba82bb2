#include "cli/batch/render_line.h"

#include "cli/batch/batch_plan.h"
#include "cli/terminal/shell_line.h"
#include "library/known_files.h"
#include "presets/preset_names.h"
#include "rendering/request_streams.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// Those whose place the request's own take, and those of the batch.
constexpr std::array<std::string_view, 5> kLeftOut = {"--seed", "--output", "--picture",
                                                      "--out-dir", "--dry-run"};

void add(ShellCommand& words, const TypedOption& option) {
    words.push_back(option.name);
    if (option.value) words.push_back(*option.value);
}

bool looksLikeAnOption(const std::string& word) {
    return word.starts_with('-');
}

ShellCommand folderCommand(const fs::path& folder) {
    ShellCommand command = {"mkdir", "-p"};
    if (looksLikeAnOption(folder.string())) command.emplace_back("--");
    command.push_back(folder.string());
    return command;
}

} // namespace

std::string renderLine(const RenderOptions& options, const RenderRequest& request,
                       BankFolder& banks) {
    std::vector<ShellCommand> commands;
    std::error_code ignored;
    if (options.outDir && !fs::exists(*options.outDir, ignored))
        commands.push_back(folderCommand(*options.outDir));

    ShellCommand words = {options.typed.program};
    for (const TypedOption& option : options.typed.before) add(words, option);
    words.emplace_back("render");
    const std::string input = request.input.string();
    if (!input.empty() && !looksLikeAnOption(input)) words.push_back(input);
    for (const TypedOption& option : options.typed.behind) {
        if (std::ranges::find(kLeftOut, option.name) != kLeftOut.end()) continue;
        const bool isPreset = option.name == "--preset" && request.preset;
        if (isPreset && !options.played->bank) // whatever other banks may hold by then
            add(words, {"--bank", request.preset->bank});
        add(words, isPreset ? TypedOption{option.name, presetWord(banks, request.preset->bank,
                                                                  request.preset->key)}
                            : option);
    }
    if (request.seed) add(words, {"--seed", std::to_string(*request.seed)});
    add(words, {"-o", request.output.string()});
    if (request.picture) add(words, {"--picture", request.picture->string()});
    if (looksLikeAnOption(input)) add(words, {"--", input});
    commands.push_back(std::move(words));
    return shellLine(commands);
}

ExitCode printBatchLines(const Folders& folders, const RenderOptions& options) {
    const KnownFiles known;
    ExitCode code = ExitCode::failure;
    const auto planned = planBatch(options, folders, known, code);
    if (!planned) return endWith(code, planned.message());
    std::error_code ignored;
    if (fs::exists(*options.outDir, ignored) && !fs::is_directory(*options.outDir, ignored))
        return endWith(ExitCode::failure, noOutFolder(*options.outDir, "it is no folder").message);
    std::vector<const RenderRequest*> requests;
    for (const BatchJob& job : planned.value())
        if (job.request) requests.push_back(&*job.request);
    if (const auto separate = checkSeparateStreams(requests); !separate)
        return endWith(ExitCode::wrongUsage, "--dry-run: " + separate.message());
    BankFolder banks(folders, known.banks);
    std::string lines;
    code = ExitCode::success;
    for (const BatchJob& job : planned.value())
        if (job.request)
            lines += renderLine(options, *job.request, banks) + "\n";
        else
            code = endWith(ExitCode::failure, job.name + ": " + job.end.message);
    const ExitCode printed = printOut(lines);
    return printed == ExitCode::success ? code : printed;
}

} // namespace zephyra

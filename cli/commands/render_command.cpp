#include "cli/commands/commands.h"

#include "cli/batch/batch_names.h"
#include "cli/batch/batch_render.h"
#include "cli/render/render_job.h"

#include <cstdio>
#include <optional>
#include <utility>

namespace zephyra {

namespace {

/// The one preset that was asked for; none where none was.
Result<std::optional<PresetChoice>> choosePreset(const std::optional<NamedPreset>& played,
                                                 const Folders& folders, const KnownFiles& known) {
    if (!played) return std::optional<PresetChoice>();
    BankFolder banks(folders, known.banks);
    Result<std::vector<PresetChoice>> chosen = choosePresets(banks, *played);
    if (!chosen) return Failure{chosen.message()};
    return std::optional(std::move(chosen.value().front()));
}

/// INPUT's name, else the preset's.
std::string ownName(const RenderRequest& request) {
    if (!request.input.empty()) return request.input.stem().string();
    return BatchNames().take(std::nullopt, request.preset->name);
}

ExitCode tell(const RenderOptions& options, const RenderEnd& end) {
    if (end.code != ExitCode::success) return endWith(end.code, end.message);
    if (!options.quiet)
        for (const std::string& notice : end.notices)
            std::fprintf(stderr, "zephyra: %s\n", notice.c_str());
    if (options.json) return printOut(end.json);
    return options.quiet ? ExitCode::success : printOut(end.text);
}

} // namespace

ExitCode runRender(const CommandContext& context, const RenderOptions& options) {
    if (options.outDir) return runBatchRender(context.folders, options);
    const KnownFiles known;
    auto preset = choosePreset(options.played, context.folders, known);
    if (!preset) return endWith(ExitCode::failure, preset.message());
    RenderRequest request = options.request;
    request.preset = std::move(preset.value());
    if (!options.inputs.empty()) request.input = options.inputs.front();
    if (request.output.empty()) request.output = ownName(request) + "-grains." + request.type.name;
    if (const Complaint wrong = checkRequest(request, context.folders))
        return endWith(ExitCode::wrongUsage, wrong->message);
    const auto shown = options.quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal;
    return tell(options, renderFile(request, context.folders, known, shown));
}

} // namespace zephyra

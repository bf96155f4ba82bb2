#include "cli/commands/render_command.h"

#include "cli/batch/batch_render.h"
#include "cli/command_folders.h"
#include "cli/commands/render_job.h"
#include "presets/preset_choice.h"

#include <optional>
#include <utility>

namespace zephyra {

namespace {

/// The one preset that was asked for; none where none was.
Result<std::optional<PresetChoice>> choosePreset(const PresetOptions& presets) {
    if (!presets.played) return std::optional<PresetChoice>();
    const Folders folders = commandFolders();
    BankFolder banks(folders);
    Result<std::vector<PresetChoice>> chosen = choosePresets(banks, *presets.played);
    if (!chosen) return Failure{chosen.message()};
    return std::optional(std::move(chosen.value().front()));
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

ExitCode runRender(const TypedRenderOptions& typed) {
    const Result<PresetOptions> presets = checkPresetOptions(typed.presets);
    if (!presets) return endWith(ExitCode::wrongUsage, presets.message());
    if (const auto fits = checkOneStart(typed); !fits)
        return endWith(ExitCode::wrongUsage, fits.message());
    if (presets.value().outDir) return runBatchRender(typed, presets.value());
    if (const auto fits = checkOneInput(typed); !fits)
        return endWith(ExitCode::wrongUsage, fits.message());

    const auto preset = choosePreset(presets.value());
    if (!preset) return endWith(ExitCode::failure, preset.message());
    const Result<RenderOptions> options = checkRenderOptions(typed, preset.value());
    if (!options) return endWith(ExitCode::wrongUsage, options.message());
    const bool quiet = options.value().quiet;
    return tell(options.value(),
                renderFile(options.value(),
                           quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal));
}

} // namespace zephyra

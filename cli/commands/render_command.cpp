#include "cli/commands/commands.h"

#include "cli/batch/batch_names.h"
#include "cli/batch/batch_render.h"
#include "cli/batch/render_line.h"
#include "cli/render/render_job.h"
#include "cli/terminal/command_clock.h"
#include "cli/terminal/interrupt.h"
#include "library/named_sample.h"
#include "platform/files/byte_stream.h"
#include "presets/factory_banks.h"
#include "rendering/output/output_sink.h"
#include "rendering/render_seed.h"
#include "rendering/request_streams.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

namespace zephyra {

namespace {

/// With the files of samples that were named as the library lists them.
RenderOptions withSamples(RenderOptions options, const Folders& folders) {
    for (std::filesystem::path& input : options.inputs) input = namedSample(input, folders);
    if (auto& sample = options.request.host.sample) sample = namedSample(*sample, folders);
    return options;
}

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
    if (!request.input.empty()) return inputStem(request.input);
    return BatchNames().take(std::nullopt, request.preset->name);
}

/// The one render that was asked for. code: how a failure ends.
Result<RenderRequest> oneRequest(const RenderOptions& options, const Folders& folders,
                                 const KnownFiles& known, ExitCode& code) {
    code = ExitCode::failure;
    auto preset = choosePreset(options.played, folders, known);
    if (!preset) return Failure{preset.message()};
    code = ExitCode::wrongUsage;
    RenderRequest request = options.request;
    request.preset = std::move(preset.value());
    if (!options.inputs.empty()) request.input = options.inputs.front();
    if (auto& saved = request.savedPreset)
        saved->bank = bankToSaveInto(BankFolder(folders, known.banks), saved->bank);
    if (request.output.empty()) request.output = ownName(request) + "-grains." + request.type.name;
    if (Complaint wrong = checkRequest(request, folders)) return std::move(*wrong);
    return request;
}

ExitCode printLine(const RenderOptions& options, RenderRequest request, const Folders& folders,
                   const KnownFiles& known) {
    BankFolder banks(folders, known.banks);
    if (request.savedPreset)
        if (const auto free = checkPresetSaving(banks, *request.savedPreset); !free)
            return endWith(ExitCode::wrongUsage, free.message());
    request.seed = settledSeed(request, commandClock());
    return printOut(renderLine(options, request, banks) + "\n");
}

/// Standard output holds nothing but sound where it is what is written.
ExitCode tell(const RenderOptions& options, const RenderRequest& request, const RenderEnd& end) {
    if (end.code != ExitCode::success) return endWith(end.code, end.message);
    if (!options.quiet)
        for (const std::string& notice : end.notices)
            std::fprintf(stderr, "zephyra: %s\n", notice.c_str());
    std::FILE* const to = ByteStream::isStandardOutput(request.output) ? stderr : stdout;
    if (options.json) return printOut(end.json, to);
    return options.quiet ? ExitCode::success : printOut(end.text, to);
}

} // namespace

ExitCode runRender(const CommandContext& context, const RenderOptions& typed) {
    const Folders& folders = context.folders;
    const RenderOptions options = withSamples(typed, folders);
    if (options.outDir)
        return options.dryRun ? printBatchLines(folders, options)
                              : runBatchRender(folders, options);
    const KnownFiles known;
    ExitCode code = ExitCode::failure;
    auto one = oneRequest(options, folders, known, code);
    if (!one) return endWith(code, one.message());
    RenderRequest& request = one.value();
    if (options.dryRun) return printLine(options, request, folders, known);
    if (ByteStream::isTerminal(request.output))
        return endWith(ExitCode::wrongUsage,
                       outputTitle(request.output) +
                           " is a terminal, which plays no sound; name a file with -o, or send "
                           "the sound on with | or >");
    const auto streams = std::make_shared<StreamedFiles>();
    if (const auto taken = takeStreams(request, *streams, goesOn); !taken)
        return endWith(failureOrInterrupt(), taken.message());
    request.streams = streams;
    const auto shown = options.quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal;
    return tell(options, request, renderFile(request, folders, known, shown));
}

} // namespace zephyra

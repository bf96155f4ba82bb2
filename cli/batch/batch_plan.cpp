#include "cli/batch/batch_plan.h"

#include "cli/batch/batch_names.h"
#include "cli/command_folders.h"
#include "cli/options/file_clashes.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// Options that name one file cannot be meant for many renders.
Result<void> checkOptions(const TypedRenderOptions& typed) {
    const std::pair<const char*, bool> single[] = {
        {"-o", typed.output.has_value()},
        {"--picture", typed.picture.has_value()},
        {"--save-state", typed.host.saveState.has_value()},
        {"--record-scrub", typed.motion.recordScrub.has_value()}};
    for (const auto& [option, given] : single)
        if (given)
            return Failure{std::string(option) +
                           " names one file; leave it out with --out-dir, where every render has "
                           "files of its own"};
    if (std::count(typed.inputs.begin(), typed.inputs.end(), "") > 0)
        return Failure{"INPUT is empty; name a sound file"};
    if (!typed.inputs.empty() || typed.presets.bank) return {};
    return Failure{"--out-dir needs something to render; name sound files, or --bank and --preset"};
}

Result<std::vector<std::optional<PresetChoice>>> presetsOf(const PresetOptions& presets) {
    std::vector<std::optional<PresetChoice>> all;
    if (presets.played) {
        const Folders folders = commandFolders();
        BankFolder banks(folders);
        Result<std::vector<PresetChoice>> chosen = choosePresets(banks, *presets.played);
        if (!chosen) return Failure{chosen.message()};
        all.assign(std::make_move_iterator(chosen.value().begin()),
                   std::make_move_iterator(chosen.value().end()));
    }
    if (all.empty()) all.emplace_back();
    return all;
}

void checkJob(const TypedRenderOptions& typed, const fs::path& folder, BatchJob& job) {
    TypedRenderOptions own = typed;
    own.inputs.clear();
    if (!job.input.empty()) own.inputs.push_back(job.input.string());
    own.output = (folder / (job.name + "." + outputExtension(typed))).string();
    own.picture = (folder / (job.name + ".png")).string();
    Result<RenderOptions> options = checkRenderOptions(own, job.preset);
    if (options)
        job.options = std::move(options.value());
    else
        job.end = {.code = ExitCode::wrongUsage, .message = options.message()};
}

/// Whether the renders leave every file alone that one of them reads.
Result<void> checkReplacing(const std::vector<BatchJob>& jobs, const fs::path& folder) {
    const Folders folders = commandFolders();
    std::map<fs::path, std::string> read;
    for (const BatchJob& job : jobs) {
        if (!job.input.empty()) read.emplace(trueName(job.input), "INPUT");
        if (!job.preset) continue;
        for (const fs::path& file : sampleFiles(*job.preset, folders))
            read.emplace(trueName(file), "a preset's sample");
    }
    std::vector<fs::path> written = {folder / (std::string(kContactSheet) + ".png")};
    for (const BatchJob& job : jobs)
        if (job.options)
            written.insert(written.end(), {job.options->output, *job.options->picture});
    for (const fs::path& file : written)
        if (const auto found = read.find(trueName(file)); found != read.end())
            return Failure{file.string() + " would replace " + found->second +
                           "; choose another folder with --out-dir"};
    return {};
}

} // namespace

const RenderEnd* commonFailure(const std::vector<BatchJob>& jobs) {
    if (jobs.empty()) return nullptr;
    const RenderEnd& first = jobs.front().end;
    const bool common = std::all_of(jobs.begin(), jobs.end(), [&](const BatchJob& job) {
        return job.end.code != ExitCode::success && job.end.message == first.message;
    });
    return common ? &first : nullptr;
}

Result<std::vector<BatchJob>> planBatch(const TypedRenderOptions& typed,
                                        const PresetOptions& presets, ExitCode& code) {
    code = ExitCode::wrongUsage;
    if (const auto right = checkOptions(typed); !right) return Failure{right.message()};
    const auto chosen = presetsOf(presets);
    if (!chosen) {
        code = ExitCode::failure;
        return Failure{chosen.message()};
    }
    std::vector<fs::path> inputs(typed.inputs.begin(), typed.inputs.end());
    if (inputs.empty()) inputs.emplace_back();
    const bool named = inputs.size() > 1 || !presets.played; // after the inputs
    const bool namedByPreset = chosen.value().size() > 1 || !named;

    BatchNames names;
    names.reserve(kContactSheet);
    std::vector<BatchJob> jobs;
    for (const fs::path& input : inputs)
        for (const auto& preset : chosen.value()) {
            BatchJob job{.name = {}, .input = input, .preset = preset, .options = {}, .end = {}};
            job.name = names.take(named ? std::optional(input.stem().string()) : std::nullopt,
                                  namedByPreset ? std::optional(preset->name) : std::nullopt);
            checkJob(typed, *presets.outDir, job);
            jobs.push_back(std::move(job));
        }
    if (std::none_of(jobs.begin(), jobs.end(), [](const BatchJob& job) { return job.options; }))
        return Failure{jobs.front().end.message};
    if (const auto kept = checkReplacing(jobs, *presets.outDir); !kept)
        return Failure{kept.message()};
    return jobs;
}

} // namespace zephyra

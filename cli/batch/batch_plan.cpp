#include "cli/batch/batch_plan.h"

#include "cli/batch/batch_names.h"
#include "cli/terminal/command_clock.h"
#include "rendering/file_clashes.h"
#include "rendering/render_seed.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

Result<std::vector<std::optional<PresetChoice>>>
presetsOf(const RenderOptions& options, const Folders& folders, const KnownFiles& known) {
    std::vector<std::optional<PresetChoice>> all;
    if (options.played) {
        BankFolder banks(folders, known.banks);
        Result<std::vector<PresetChoice>> chosen = choosePresets(banks, *options.played);
        if (!chosen) return Failure{chosen.message()};
        all.assign(std::make_move_iterator(chosen.value().begin()),
                   std::make_move_iterator(chosen.value().end()));
    }
    if (all.empty()) all.emplace_back();
    return all;
}

/// What the job's render is asked for.
RenderRequest requestOf(const BatchJob& job, const RenderOptions& options,
                        std::optional<std::uint32_t> seed) {
    RenderRequest request = options.request;
    request.seed = seed;
    request.input = job.input;
    request.preset = job.preset;
    request.output = *options.outDir / (job.name + "." + request.type.name);
    request.picture = *options.outDir / (job.name + ".png");
    return request;
}

/// Whether the renders leave every file alone that one of them reads.
Result<void> checkReplacing(const std::vector<BatchJob>& jobs, const fs::path& folder,
                            const Folders& folders) {
    std::map<fs::path, std::string> read;
    for (const BatchJob& job : jobs) {
        if (!job.input.empty()) read.emplace(trueName(job.input), "INPUT");
        if (!job.preset) continue;
        for (const fs::path& file : sampleFiles(*job.preset, folders))
            read.emplace(trueName(file), "a preset's sample");
    }
    std::vector<fs::path> written = {folder / (std::string(kContactSheet) + ".png")};
    for (const BatchJob& job : jobs)
        if (job.request)
            written.insert(written.end(), {job.request->output, *job.request->picture});
    for (const fs::path& file : written)
        if (const auto found = read.find(trueName(file)); found != read.end())
            return Failure{file.string() + " would replace " + found->second +
                           "; choose another folder with --out-dir"};
    return {};
}

} // namespace

Failure noOutFolder(const fs::path& folder, const std::string& why) {
    return {"--out-dir " + folder.string() + " cannot be made (" + why + "); choose another"};
}

const RenderEnd* commonFailure(const std::vector<BatchJob>& jobs) {
    if (jobs.empty()) return nullptr;
    const RenderEnd& first = jobs.front().end;
    const bool common = std::all_of(jobs.begin(), jobs.end(), [&](const BatchJob& job) {
        return job.end.code != ExitCode::success && job.end.message == first.message;
    });
    return common ? &first : nullptr;
}

Result<std::vector<BatchJob>> planBatch(const RenderOptions& options, const Folders& folders,
                                        const KnownFiles& known, ExitCode& code) {
    code = ExitCode::failure;
    const auto chosen = presetsOf(options, folders, known);
    if (!chosen) return Failure{chosen.message()};
    code = ExitCode::wrongUsage;
    std::vector<fs::path> inputs = options.inputs;
    if (inputs.empty()) inputs.emplace_back();
    const bool named = inputs.size() > 1 || !options.played; // after the inputs
    const bool namedByPreset = chosen.value().size() > 1 || !named;

    const auto seed = settledSeed(options.request, commandClock());
    BatchNames names;
    names.reserve(kContactSheet);
    std::vector<BatchJob> jobs;
    for (const fs::path& input : inputs)
        for (const auto& preset : chosen.value()) {
            BatchJob job{.name = {}, .input = input, .preset = preset, .request = {}, .end = {}};
            job.name = names.take(named ? std::optional(inputStem(input)) : std::nullopt,
                                  namedByPreset ? std::optional(preset->name) : std::nullopt);
            RenderRequest request = requestOf(job, options, seed);
            if (const Complaint wrong = checkRequest(request, folders))
                job.end = {.code = ExitCode::wrongUsage, .message = wrong->message};
            else
                job.request = std::move(request);
            jobs.push_back(std::move(job));
        }
    if (std::none_of(jobs.begin(), jobs.end(), [](const BatchJob& job) { return job.request; }))
        return Failure{jobs.front().end.message};
    if (const auto kept = checkReplacing(jobs, *options.outDir, folders); !kept)
        return Failure{kept.message()};
    return jobs;
}

} // namespace zephyra

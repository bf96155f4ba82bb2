#include "cli/render/render_job.h"

#include "cli/render/render_notices.h"
#include "cli/terminal/command_clock.h"
#include "cli/terminal/interrupt.h"
#include "pictures/cairo/picture_file.h"
#include "pictures/cairo/render_page.h"
#include "platform/files/atomic_file.h"
#include "platform/files/folder_entries.h"
#include "presets/preset_saving.h"
#include "rendering/events/take_file.h"
#include "rendering/offline_render.h"
#include "rendering/picture_recorder.h"
#include "rendering/render_output.h"
#include "rendering/render_plan.h"
#include "rendering/render_source.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace zephyra {

namespace {

/// A render on its way: the files it goes into, and what is collected meanwhile.
struct Job {
    const RenderRequest& request;
    OfflineRender render;
    const RenderPlan& plan() const { return render.plan(); }
    RenderOutput output;
    PictureFile pictureFile;
    TakeFile takeFile;
    const std::function<void(const RenderPicture&)>& seen;
    std::unique_ptr<PictureRecorder> recorder; // only when a picture is wanted
};

/// Whether a state can be saved there, before hours go into the sound that comes with it.
Result<void> checkStateFile(const std::optional<std::filesystem::path>& path) {
    AtomicFile trial;
    const std::error_code error = path ? trial.open(*path) : std::error_code();
    if (!error) return {};
    return Failure{path->string() + ": the state cannot be written (" + error.message() +
                   "); choose a folder with room that may be written to"};
}

Result<ReadSource> readSource(const RenderRequest& request, const Folders& folders,
                              const KnownFiles& known, ProgressBar::Shown shown) {
    ProgressBar bar("Reading  ", shown);
    return readRenderSource(request, folders, known.sounds, [&bar](double share) {
        bar.update(share);
        return goesOn();
    });
}

/// Opens what will be written before the long work begins.
Result<void> openFiles(Job& job, const ReadSource& read) {
    if (auto writable = checkStateFile(job.request.host.saveState); !writable) return writable;
    if (const auto& take = job.request.motion.recordScrub)
        if (auto opened = job.takeFile.open(*take); !opened) return opened;
    if (job.request.picture)
        if (auto opened = job.pictureFile.open(*job.request.picture); !opened) return opened;
    // Last: what reads from a pipe gets the sound's first bytes here.
    if (auto opened = job.output.open(job.request, job.plan(), goesOn); !opened) return opened;
    if (!job.request.picture && !job.seen) return {};
    job.recorder = std::make_unique<PictureRecorder>(job.plan(), read.shown, RenderPage::grid());
    job.recorder->addSource(read.shownSamples());
    job.output.setListener([&job](const float* left, const float* right, std::uint32_t frames) {
        job.recorder->addOutput(left, right, frames);
    });
    return {};
}

Result<RenderStatistics> renderAll(Job& job, ProgressBar::Shown shown,
                                   const std::function<void(double)>& told) {
    ProgressBar bar("Rendering", shown);
    return job.render.run([&](const RenderedBlock& block) -> Result<void> {
        if (interrupted()) return Failure{interruptedText(job.request.output)};
        if (job.recorder) job.recorder->add(block);
        const double share =
            static_cast<double>(block.firstFrame) / static_cast<double>(job.plan().frames);
        bar.update(share);
        if (told) told(share);
        return job.output.write(block.left, block.right, block.frames);
    });
}

/// What an automatic gain had to wait for.
Result<void> finishOutput(Job& job, ProgressBar::Shown shown) {
    ProgressBar bar("Writing  ", shown);
    return job.output.finish([&bar](double share) { bar.update(share); });
}

Result<void> saveState(Job& job) {
    if (!job.request.host.saveState) return {};
    return writePropertyListFile(*job.request.host.saveState, job.render.state());
}

Result<void> saveTake(Job& job) {
    const TakeRecorder* const take = job.render.recordedTake();
    return take ? job.takeFile.save(take->positions()) : Result<void>();
}

std::string pictureTitle(const RenderRequest& request) {
    const std::string input =
        isStream(request.input) ? inputTitle(request.input) : request.input.filename().string();
    if (!request.preset) return input;
    const std::string preset =
        request.preset->name + " (" + std::string(stemOf(request.preset->bank)) + ")";
    return input.empty() ? preset : preset + " \u00B7 " + input;
}

Result<void> savePicture(Job& job, const RenderStatistics& statistics) {
    if (!job.recorder) return {};
    const RenderPicture& picture =
        job.recorder->finish(pictureTitle(job.request), statistics, job.output.file());
    if (job.seen) job.seen(picture);
    if (!job.request.picture) return {};
    const RenderPage page(picture);
    Canvas canvas(RenderPage::kWidth, page.height());
    page.draw(canvas);
    return job.pictureFile.save(canvas);
}

Result<void> savePresetOf(Job& job, BankFolder& banks) {
    if (!job.request.savedPreset) return {};
    return savePreset(banks, *job.request.savedPreset, job.render.snapshot(),
                      currentDateAndTime(commandClock()));
}

/// Puts every file under its name, the sound first.
Result<void> saveAll(Job& job, const RenderStatistics& statistics, BankFolder& banks) {
    if (const auto closed = job.output.close(); !closed) return closed;
    if (const auto saved = savePicture(job, statistics); !saved) return saved;
    if (const auto saved = saveTake(job); !saved) return saved;
    if (const auto saved = saveState(job); !saved) return saved;
    return savePresetOf(job, banks);
}

RenderEnd success(const Job& job, const ReadSource& read, const RenderStatistics& statistics) {
    const TakeRecorder* const take = job.render.recordedTake();
    const RenderOutcome outcome = {job.request,
                                   job.plan(),
                                   statistics,
                                   job.output.file(),
                                   job.output.gain(),
                                   take ? take->positions().size() : 0,
                                   take && take->isCut(),
                                   job.request.preset ? read.sampleFile.string() : std::string()};
    const std::vector<std::string> notices = noticesOf(outcome, read);
    RenderEnd end;
    end.text = textReport(outcome);
    end.json = jsonReport(outcome, read, notices);
    end.line = outputLine(outcome);
    end.levels = levelText(job.output.file());
    end.notices = notices;
    return end;
}

RenderEnd failed(std::string message) {
    return {.code = ExitCode::failure, .message = std::move(message)};
}

RenderEnd wrongUsage(std::string message) {
    return {.code = ExitCode::wrongUsage, .message = std::move(message)};
}

} // namespace

RenderEnd renderFile(const RenderRequest& request, const Folders& folders, const KnownFiles& known,
                     ProgressBar::Shown bar, const std::function<void(double share)>& told,
                     LogSink log, const std::function<void(const RenderPicture&)>& seen) {
    BankFolder banks(folders, known.banks);
    banks.setLockWait({.goesOn = goesOn});
    if (request.savedPreset)
        if (const auto free = checkPresetSaving(banks, *request.savedPreset); !free)
            return wrongUsage(free.message());
    Result<ReadSource> read = readSource(request, folders, known, bar);
    if (!read) return failed(read.message());
    if (!read.value().notice.empty()) Log(log).write(read.value().notice);
    if (const auto fits = checkInputRate(request, read.value().input); !fits)
        return wrongUsage(fits.message());
    Result<RenderPlan> plan = makeRenderPlan(request, read.value().input, commandClock());
    if (!plan) return failed(plan.message());

    Job job{.request = request,
            .render = OfflineRender(std::move(plan.value()), folders, known, std::move(log)),
            .output = {},
            .pictureFile = {},
            .takeFile = {},
            .seen = seen,
            .recorder = nullptr};
    if (const auto ready = job.render.prepare(std::move(read.value().source)); !ready)
        return failed(ready.message());
    if (const auto fits = checkTimes(job.plan()); !fits) return wrongUsage(fits.message());
    if (const auto opened = openFiles(job, read.value()); !opened) return failed(opened.message());
    const Result<RenderStatistics> statistics = renderAll(job, bar, told);
    if (!statistics) return failed(statistics.message());
    if (const auto finished = finishOutput(job, bar); !finished) return failed(finished.message());
    if (const auto saved = saveAll(job, statistics.value(), banks); !saved)
        return {.code = failureOrInterrupt(), .message = saved.message()};
    return success(job, read.value(), statistics.value());
}

} // namespace zephyra

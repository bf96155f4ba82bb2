#include "cli/render_command.h"

#include "cli/interrupt.h"
#include "cli/offline_render.h"
#include "cli/output_file.h"
#include "cli/picture_file.h"
#include "cli/picture_recorder.h"
#include "cli/progress_bar.h"
#include "cli/render_plan.h"
#include "cli/render_report.h"
#include "cli/render_source.h"
#include "cli/take_file.h"
#include "platform/atomic_file.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace zephyra {

namespace {

ProgressBar::Shown barFor(const RenderOptions& options) {
    return options.quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal;
}

/// A render on its way: the files it goes into, and what is collected meanwhile.
struct Job {
    const RenderOptions& options;
    OfflineRender render;
    const RenderPlan& plan() const { return render.plan(); }
    OutputFile file;
    PictureFile pictureFile;
    TakeFile takeFile;
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

/// Opens what will be written before the long work begins.
Result<void> openFiles(Job& job, const ReadSource& read) {
    const SampleFormat format = job.options.floats ? SampleFormat::floats : SampleFormat::shorts;
    if (auto opened =
            job.file.open(job.options.output, job.options.type, format, job.plan().sampleRate);
        !opened)
        return opened;
    if (auto writable = checkStateFile(job.options.host.saveState); !writable) return writable;
    if (const auto& take = job.options.motion.recordScrub)
        if (auto opened = job.takeFile.open(*take); !opened) return opened;
    if (!job.options.picture) return {};
    if (auto opened = job.pictureFile.open(*job.options.picture); !opened) return opened;
    job.recorder = std::make_unique<PictureRecorder>(job.plan(), read.shown);
    job.recorder->addSource(read.shownSamples());
    return {};
}

Result<RenderStatistics> renderAll(Job& job) {
    ProgressBar bar("Rendering", barFor(job.options));
    return job.render.run([&](const RenderedBlock& block) -> Result<void> {
        if (interrupted())
            return Failure{"interrupted; " + job.options.output.string() + " was not written"};
        if (job.recorder) job.recorder->add(block); // before the writer limits the samples
        bar.update(static_cast<double>(block.firstFrame) / static_cast<double>(job.plan().frames));
        return job.file.write(block.left, block.right, block.frames);
    });
}

Result<void> saveState(Job& job) {
    if (!job.options.host.saveState) return {};
    return writePropertyListFile(*job.options.host.saveState, job.render.state());
}

Result<void> saveTake(Job& job) {
    const TakeRecorder* const take = job.render.recordedTake();
    if (!take) return {};
    if (take->isCut() && !job.options.quiet)
        std::fprintf(stderr,
                     "zephyra: %s: a take holds 1800 positions; what came after 120 s is left "
                     "out\n",
                     job.options.motion.recordScrub->c_str());
    return job.takeFile.save(take->positions());
}

Result<void> savePicture(Job& job, const RenderStatistics& statistics) {
    if (!job.recorder) return {};
    Canvas canvas(RenderPicture::kWidth, job.recorder->height());
    job.recorder->draw(canvas, job.options.input.filename().string(), statistics, job.file);
    return job.pictureFile.save(canvas);
}

ExitCode tell(const RenderOutcome& outcome) {
    const RenderOptions& options = outcome.options;
    if (const std::uint64_t limited = outcome.file.limitedSamples(); limited > 0 && !options.quiet)
        std::fprintf(stderr,
                     "zephyra: %s: %llu samples exceeded full scale and were limited; lower "
                     "Amplitude or write --float\n",
                     options.output.c_str(), static_cast<unsigned long long>(limited));
    if (options.json) return printOut(jsonReport(outcome));
    return options.quiet ? ExitCode::success : printOut(textReport(outcome));
}

} // namespace

ExitCode runRender(const TypedRenderOptions& typed) {
    const Result<RenderOptions> checked = checkRenderOptions(typed);
    if (!checked) return endWith(ExitCode::wrongUsage, checked.message());
    const RenderOptions& options = checked.value();

    Result<ReadSource> read = readRenderSource(options, barFor(options));
    if (!read) return endWith(ExitCode::failure, read.message());
    if (const auto fits = checkInputRate(options, read.value().input); !fits)
        return endWith(ExitCode::wrongUsage, fits.message());
    Result<RenderPlan> plan = makeRenderPlan(options, read.value().input);
    if (!plan) return endWith(ExitCode::failure, plan.message());

    Job job{.options = options,
            .render = OfflineRender(std::move(plan.value())),
            .file = {},
            .pictureFile = {},
            .takeFile = {},
            .recorder = nullptr};
    if (const auto ready = job.render.prepare(std::move(read.value().source)); !ready)
        return endWith(ExitCode::failure, ready.message());
    if (const auto fits = checkTimes(job.plan()); !fits)
        return endWith(ExitCode::wrongUsage, fits.message());
    if (const auto opened = openFiles(job, read.value()); !opened)
        return endWith(ExitCode::failure, opened.message());
    const Result<RenderStatistics> statistics = renderAll(job);
    if (!statistics) return endWith(ExitCode::failure, statistics.message());

    if (const auto closed = job.file.close(); !closed)
        return endWith(ExitCode::failure, closed.message());
    if (const auto saved = savePicture(job, statistics.value()); !saved)
        return endWith(ExitCode::failure, saved.message());
    if (const auto saved = saveTake(job); !saved)
        return endWith(ExitCode::failure, saved.message());
    if (const auto saved = saveState(job); !saved)
        return endWith(ExitCode::failure, saved.message());
    const TakeRecorder* const take = job.render.recordedTake();
    return tell(
        {options, job.plan(), statistics.value(), job.file, take ? take->positions().size() : 0});
}

} // namespace zephyra

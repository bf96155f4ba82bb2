#include "cli/render_command.h"

#include "cli/interrupt.h"
#include "cli/offline_render.h"
#include "cli/output_file.h"
#include "cli/picture_file.h"
#include "cli/picture_recorder.h"
#include "cli/progress_bar.h"
#include "cli/render_plan.h"
#include "cli/render_report.h"
#include "platform/sound_file.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace zephyra {

namespace {

ProgressBar::Shown barFor(const RenderOptions& options) {
    return options.quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal;
}

Result<SoundFile> readSource(const RenderOptions& options) {
    ProgressBar bar("Reading  ", barFor(options));
    SoundFileOptions reading;
    reading.progress = [&bar](double share) {
        bar.update(share);
        return !interrupted();
    };
    return readSoundFile(options.input, reading);
}

std::shared_ptr<mokSample> makeSample(const SoundFile& sound) {
    auto sample = std::make_shared<mokSample>();
    if (!sample->allocate(sound.samples.size(), static_cast<float>(sound.info.sampleRate)))
        return nullptr;
    std::copy(sound.samples.begin(), sound.samples.end(), sample->getPtr());
    sample->writeGuardPoint();
    return sample;
}

/// A render on its way: the files it goes into, and what is collected meanwhile.
struct Job {
    const RenderOptions& options;
    const RenderPlan& plan;
    OutputFile file;
    PictureFile pictureFile;
    std::unique_ptr<PictureRecorder> recorder; // only when a picture is wanted
};

/// Opens what will be written before the long work begins.
Result<void> openFiles(Job& job, const SoundFile& sound) {
    const SampleFormat format = job.options.floats ? SampleFormat::floats : SampleFormat::shorts;
    if (auto opened =
            job.file.open(job.options.output, job.options.type, format, job.plan.sampleRate);
        !opened)
        return opened;
    if (!job.options.picture) return {};
    if (auto opened = job.pictureFile.open(*job.options.picture); !opened) return opened;
    job.recorder = std::make_unique<PictureRecorder>(job.plan, sound.info);
    job.recorder->addSource(sound.samples);
    return {};
}

Result<RenderStatistics> renderInto(Job& job, std::shared_ptr<mokSample> source) {
    if (!source) return Failure{"memory is too short for " + job.options.input.string()};
    OfflineRender render(job.plan);
    if (const auto ready = render.prepare(std::move(source)); !ready)
        return Failure{ready.message()};
    ProgressBar bar("Rendering", barFor(job.options));
    return render.run([&](const RenderedBlock& block) -> Result<void> {
        if (interrupted())
            return Failure{"interrupted; " + job.options.output.string() + " was not written"};
        if (job.recorder) job.recorder->add(block); // before the writer limits the samples
        bar.update(static_cast<double>(block.firstFrame) / static_cast<double>(job.plan.frames));
        return job.file.write(block.left, block.right, block.frames);
    });
}

Result<void> savePicture(Job& job, const RenderStatistics& statistics) {
    if (!job.recorder) return {};
    Canvas canvas(RenderPicture::kWidth, RenderPicture::kHeight);
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

    Result<SoundFile> sound = readSource(options);
    if (!sound) return endWith(ExitCode::failure, sound.message());
    const Result<RenderPlan> plan = makeRenderPlan(options, sound.value().info);
    if (!plan) return endWith(ExitCode::wrongUsage, plan.message());

    Job job{.options = options,
            .plan = plan.value(),
            .file = {},
            .pictureFile = {},
            .recorder = nullptr};
    if (const auto opened = openFiles(job, sound.value()); !opened)
        return endWith(ExitCode::failure, opened.message());
    std::shared_ptr<mokSample> source = makeSample(sound.value());
    sound.value().samples = {}; // a long source is not held twice
    const Result<RenderStatistics> statistics = renderInto(job, std::move(source));
    if (!statistics) return endWith(ExitCode::failure, statistics.message());

    if (const auto closed = job.file.close(); !closed)
        return endWith(ExitCode::failure, closed.message());
    if (const auto saved = savePicture(job, statistics.value()); !saved)
        return endWith(ExitCode::failure, saved.message());
    return tell({options, plan.value(), statistics.value(), job.file});
}

} // namespace zephyra

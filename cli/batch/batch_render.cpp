#include "cli/batch/batch_render.h"

#include "cli/batch/batch_plan.h"
#include "cli/batch/batch_report.h"
#include "cli/batch/process_pool.h"
#include "cli/terminal/interrupt.h"
#include "pictures/cairo/contact_sheet.h"
#include "pictures/cairo/picture_file.h"
#include "pictures/cairo/render_cell.h"
#include "platform/files/folder_entries.h"
#include "platform/text/log.h"
#include "platform/text/message_text.h"
#include "rendering/request_streams.h"

#include <algorithm>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

// What a child says of its render.
constexpr char kMessage = 'm', kLine = 'l', kLevels = 'v', kJson = 'j', kNotice = 'n', kCell = 'c';

/// The render's place on the contact sheet: nothing of it ever stands in a file.
void sendCell(JobLine& line, const RenderPicture& picture, const CellSize& size) {
    Canvas canvas(size.width, size.height);
    const double width = size.width, height = size.height;
    drawRenderCell(canvas, {0, 0, width, height}, picture);
    if (const auto png = canvas.png())
        line.say(kCell, {reinterpret_cast<const char*>(png.value().data()), png.value().size()});
}

int renderInChild(const BatchJob& job, const Folders& folders, const KnownFiles& known,
                  const CellSize& cell, JobLine& line) {
    RenderEnd end;
    try {
        end = renderFile(
            *job.request, folders, known, ProgressBar::Shown::never,
            [&line](double share) { line.share(share); },
            [&line](std::string_view text) { line.say(kNotice, text); },
            [&](const RenderPicture& picture) { sendCell(line, picture, cell); });
    } catch (const std::bad_alloc&) {
        end = {.code = ExitCode::failure,
               .message = "memory is short; free some or take a shorter sound"};
    }
    for (const auto& [kind, text] : {std::pair(kMessage, &end.message),
                                     {kLine, &end.line},
                                     {kLevels, &end.levels},
                                     {kJson, &end.json}})
        line.say(kind, *text);
    for (const std::string& notice : end.notices) line.say(kNotice, notice);
    return static_cast<int>(end.code);
}

void hear(BatchJob& job, char kind, const std::string& text) {
    if (kind == kMessage) job.end.message = text;
    if (kind == kLine) job.end.line = text;
    if (kind == kLevels) job.end.levels = text;
    if (kind == kJson) job.end.json = text;
    if (kind == kCell) job.cell = text;
    if (kind == kNotice) job.end.notices.push_back(text);
}

void close(BatchJob& job, const JobEnd& end) {
    if (end.code == static_cast<int>(ExitCode::success)) return;
    job.end.code = end.code < 0 ? ExitCode::failure : static_cast<ExitCode>(end.code);
    if (!end.why.empty()) job.end.message = end.why;
    if (job.end.message.empty()) job.end.message = "its process ended before it was done";
}

/// Those whose request is right; false when the user wants no more.
bool renderJobs(std::vector<BatchJob>& jobs, const Folders& folders, const KnownFiles& known,
                ProgressBar::Shown shown) {
    std::vector<BatchJob*> ready;
    for (BatchJob& job : jobs)
        if (job.request) ready.push_back(&job);
    const CellSize cell = ContactSheet::cellSize(jobs.size());
    ProgressBar bar("Rendering", shown);
    const JobEvents events = {
        .said = [&](std::size_t i, char kind,
                    const std::string& text) { hear(*ready[i], kind, text); },
        .progressed = [&](double share) { bar.update(share); },
        .ended = [&](std::size_t i, const JobEnd& end) { close(*ready[i], end); }};
    return runJobs(
        ready.size(), processorCount(),
        [&](std::size_t i, JobLine& line) {
            return renderInChild(*ready[i], folders, known, cell, line);
        },
        events, interrupted);
}

std::string heading(const std::vector<BatchJob>& jobs, const RenderOptions& options) {
    if (!options.played) return std::to_string(jobs.size()) + " sounds";
    return std::string(stemOf(jobs.front().preset->bank)) + " \u00B7 " +
           counted(jobs.size(), "render");
}

Result<void> drawSheet(std::vector<BatchJob>& jobs, const RenderOptions& options) {
    std::vector<ContactSheetEntry> entries;
    for (BatchJob& job : jobs)
        entries.push_back({.title = job.name,
                           .detail = job.end.levels,
                           .picture = std::move(job.cell),
                           .failure = job.end.message});
    PictureFile file;
    const fs::path path = *options.outDir / (std::string(kContactSheet) + ".png");
    if (const auto opened = file.open(path); !opened) return opened;
    const ContactSheet sheet(heading(jobs, options), std::move(entries));
    Canvas canvas(sheet.width(), sheet.height());
    sheet.draw(canvas);
    return file.save(canvas);
}

Result<void> makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && fs::is_directory(folder, error)) return {};
    return noOutFolder(folder, error ? error.message() : "it is no folder");
}

/// Before there are processes, of which only one would get what comes through a pipe.
Result<void> takeAllStreams(std::vector<BatchJob>& jobs) {
    const auto streams = std::make_shared<StreamedFiles>();
    for (BatchJob& job : jobs) {
        if (!job.request) continue;
        job.request->streams = streams;
        const auto taken = takeStreams(*job.request, *streams, goesOn);
        if (!taken) return taken;
    }
    return {};
}

bool isWritten(const BatchJob& job) {
    return job.request && job.end.code == ExitCode::success && !job.end.line.empty();
}

} // namespace

ExitCode runBatchRender(const Folders& folders, const RenderOptions& options) {
    const KnownFiles known; // the processes of the jobs begin with it
    ExitCode code = ExitCode::failure;
    Result<std::vector<BatchJob>> planned = planBatch(options, folders, known, code);
    if (!planned) return endWith(code, planned.message());
    std::vector<BatchJob>& jobs = planned.value();
    if (const auto taken = takeAllStreams(jobs); !taken)
        return endWith(failureOrInterrupt(), taken.message());
    if (const auto made = makeFolder(*options.outDir); !made)
        return endWith(ExitCode::failure, made.message());

    const bool all =
        renderJobs(jobs, folders, known,
                   options.quiet ? ProgressBar::Shown::never : ProgressBar::Shown::onTerminal);
    const auto written = std::count_if(jobs.begin(), jobs.end(), isWritten);
    if (!all)
        return endWith(ExitCode::failure, "interrupted; " + std::to_string(written) + " of " +
                                              std::to_string(jobs.size()) +
                                              " renders were written");
    if (const RenderEnd* const failure = commonFailure(jobs))
        return endWith(failure->code, failure->message);
    const auto drawn = drawSheet(jobs, options);
    code = reportBatch(jobs, options);
    return drawn ? code : endWith(ExitCode::failure, drawn.message());
}

} // namespace zephyra

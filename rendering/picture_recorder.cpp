#include "rendering/picture_recorder.h"

#include "rendering/events/midi_notes.h"
#include "rendering/picture_texts.h"
#include "stream/live_buffer.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zephyra {

PictureRecorder::PictureRecorder(const RenderPlan& plan, const SoundFileInfo& source,
                                 const PictureGrid& grid)
    : plan_(plan), sourceFrames_(static_cast<double>(source.frames)),
      readFrames_(plan.use == SourceUse::live
                      ? static_cast<double>(WaveForm::kLiveFrames)
                      : std::max(sourceFrames_, static_cast<double>(mokSample::kSmallestFrames))),
      readRate_(source.sampleRate), picture_({.sourceFrames = source.frames,
                                              .sourceRate = source.sampleRate,
                                              .frames = plan.frames,
                                              .sampleRate = plan.sampleRate},
                                             grid) {
    picture_.sourceChannels = source.channels;
    GrainMap& map = picture_.map;
    map.playSeconds = static_cast<double>(plan.playFrames) / plan.sampleRate;
    map.edge = plan.use == SourceUse::live ? SourceEdge::ends : SourceEdge::wraps;
    const double start = plan.start.value_or(0.0f), end = plan.end.value_or(1.0f);
    if (map.edge == SourceEdge::wraps) {
        map.low = std::min(start, end);
        map.high = std::max(start, end);
    }
    map.events = eventsOf(plan);
    picture_.notes = notesOf(plan.midi, plan.secondsAt(plan.frames));
    addPaths(grid);
}

/// Each begins where its control stands before the first block.
void PictureRecorder::addPaths(const PictureGrid& grid) {
    for (const MovedControl& moved : plan_.moved) {
        const ControlRange& range = controlRange(moved.control);
        ControlPath& path = picture_.paths.emplace_back(range.name, moved.mover, grid.time);
        path.add(0.0, linearFromDisplayed(range,
                                          plan_.initial[static_cast<std::size_t>(moved.control)]));
    }
}

double PictureRecorder::sourcePosition(double position, std::uint64_t heard) const {
    if (plan_.use == SourceUse::loaded) return position;
    const double age = readFrames_ - 5 - position * readFrames_; // frames behind the newest
    return (static_cast<double>(heard) - 1 - age) / sourceFrames_;
}

void PictureRecorder::addGrains(const RenderedBlock& block) {
    for (const GrainRecord& grain : block.grains) {
        const RenderedCycle& cycle = block.cycleOf(grain.frame);
        const double from = sourcePosition(grain.position, cycle.heard);
        const double length = grain.length, rate = grain.rate;
        const double left = std::abs(grain.gainL), right = std::abs(grain.gainR);
        picture_.map.grains.push_back(
            {.start = static_cast<double>(grain.frame) / plan_.sampleRate,
             .length = std::max(length, 0.0),
             .from = from,
             .to = from + rate * std::max(length, 0.0) * readFrames_ /
                              (plan_.use == SourceUse::live ? sourceFrames_ : readFrames_),
             .semitones = rate > 0 ? 12 * std::log2(rate * readFrames_ / readRate_) : 0,
             .level = std::max(left, right) * double{cycle.amplitude},
             .pan = left + right > 0 ? (right - left) / (left + right) : 0,
             .dropped = grain.dropped});
    }
}

void PictureRecorder::addScan(const RenderedBlock& block) {
    std::uint64_t begin = block.firstFrame;
    for (const auto& [blockEnd, amplitude, scan, heard] : block.cycles) {
        const std::uint64_t end = block.firstFrame + blockEnd;
        if (scan.plays && begin < std::min(end, plan_.playFrames)) {
            // Held sound stays where it is; what follows the input goes on with it.
            const std::uint64_t heardBefore = heard == end ? begin : heard;
            const double low = sourcePosition(scan.start, heardBefore);
            picture_.addScan({.seconds = static_cast<double>(begin) / plan_.sampleRate,
                              .length = static_cast<double>(end - begin) / plan_.sampleRate,
                              .phase = scan.phase,
                              .travel = scan.travel,
                              .low = low,
                              .span = sourcePosition(scan.start + scan.span, heardBefore) - low,
                              .drift = sourcePosition(scan.start, heard) - low});
        }
        begin = end;
    }
}

void PictureRecorder::add(const RenderedBlock& block) {
    addGrains(block);
    addScan(block);
    picture_.addControls(plan_.secondsAt(block.firstFrame + block.frames), block.moved);
}

const RenderPicture& PictureRecorder::finish(std::string title, const RenderStatistics& statistics,
                                             const OutputFile& file) {
    picture_.finish();
    picture_.texts = pictureTexts(std::move(title), plan_, statistics, file);
    for (std::size_t i = 0; i < picture_.paths.size(); ++i) {
        ControlPath& path = picture_.paths[i];
        path.lowText = passingValueText(plan_.moved[i].control, path.all.low);
        path.highText = passingValueText(plan_.moved[i].control, path.all.high);
    }
    return picture_;
}

} // namespace zephyra

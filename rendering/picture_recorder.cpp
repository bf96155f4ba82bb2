#include "rendering/picture_recorder.h"

#include "engine/envelope_menu.h"
#include "platform/text/text_numbers.h"
#include "rendering/render_plan.h"
#include "rendering/time_order.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

namespace zephyra {

namespace {

constexpr std::array<ControlId, 6> kAlwaysTold = {ControlId::density,  ControlId::length,
                                                  ControlId::pitch,    ControlId::rndPitch,
                                                  ControlId::scanning, ControlId::jittering};

std::string decibelText(double level) {
    if (level <= 0) return "-\u221E dB";
    return formatFixed(20 * std::log10(level), 1) + " dB";
}

std::vector<std::string> settingTexts(const RenderPlan& plan) {
    const auto value = [&plan](ControlId id) { return plan.initial[static_cast<std::size_t>(id)]; };
    std::vector<std::string> texts;
    for (const ControlId id : kAlwaysTold) texts.push_back(settingText({id, value(id)}));
    for (const ControlId id : settableControls()) {
        if (id == ControlId::playStop || id == ControlId::live) continue; // the picture shows them
        const bool told =
            std::find(kAlwaysTold.begin(), kAlwaysTold.end(), id) != kAlwaysTold.end();
        const std::string text = settingText({id, value(id)});
        if (!told && text != settingText({id, controlRange(id).defaultValue}))
            texts.push_back(text);
    }
    if (plan.start) texts.push_back("Start " + formatNumber(*plan.start));
    if (plan.end) texts.push_back("End " + formatNumber(*plan.end));
    if (plan.use == SourceUse::live) texts.emplace_back("Live input");
    if (plan.host.reportsContext())
        texts.push_back("Tempo " + formatNumber(plan.host.tempo.value_or(kDefaultTempo)) + " bpm");
    texts.emplace_back(kEnvelopeMenu[static_cast<std::size_t>(value(ControlId::envelope))]);
    return texts;
}

std::vector<std::string> factTexts(const RenderPlan& plan, const RenderStatistics& statistics,
                                   const OutputFile& file) {
    return {formatDuration(static_cast<double>(plan.frames) / plan.sampleRate),
            formatNumber(plan.sampleRate) + " Hz",
            std::to_string(statistics.startedGrains) + " grains",
            std::to_string(statistics.droppedGrains) + " dropped",
            "peak " + decibelText(file.peak()),
            "rms " + decibelText(file.rms()),
            "seed " + std::to_string(plan.seed),
            "block " + std::to_string(plan.blockFrames)};
}

} // namespace

PictureRecorder::PictureRecorder(const RenderPlan& plan, const SoundFileInfo& source)
    : plan_(plan), sourceFrames_(static_cast<double>(source.frames)),
      readFrames_(plan.use == SourceUse::live
                      ? static_cast<double>(OfflineRender::kLiveFrames)
                      : std::max(sourceFrames_, static_cast<double>(mokSample::kSmallestFrames))),
      readRate_(source.sampleRate),
      picture_({.sourceFrames = source.frames,
                .sourceRate = source.sampleRate,
                .frames = plan.frames,
                .sampleRate = plan.sampleRate,
                .moved = plan.moved,
                .notes = notesOf(plan.midi, plan.secondsAt(plan.frames))}) {
    GrainMap& map = picture_.map();
    map.playSeconds = static_cast<double>(plan.playFrames) / plan.sampleRate;
    map.edge = plan.use == SourceUse::live ? SourceEdge::ends : SourceEdge::wraps;
    const double start = plan.start.value_or(0.0f), end = plan.end.value_or(1.0f);
    if (map.edge == SourceEdge::wraps) {
        map.low = std::min(start, end);
        map.high = std::max(start, end);
    }
    for (const TimedSetting& timed : plan.timedSettings)
        map.events.push_back({timed.seconds, settingText(timed.setting)});
    for (const AutomationPoint& point : plan.automation) {
        const ControlRange& range = controlRange(point.parameter);
        map.events.push_back(
            {point.seconds,
             std::string(point.ramp ? "\u2197 " : "") +
                 settingText({point.parameter, displayedFromLinear(range, point.linear)})});
    }
    if (plan.stopFrame) map.events.push_back({plan.secondsAt(*plan.stopFrame), "Stop"});
    sortByTime(map.events);
    std::vector<float> first;
    for (const MovedControl& moved : plan.moved)
        first.push_back(linearFromDisplayed(controlRange(moved.control),
                                            plan.initial[static_cast<std::size_t>(moved.control)]));
    picture_.addControls(0.0, first);
}

double PictureRecorder::sourcePosition(double position, const RenderedBlock& block,
                                       std::uint64_t frame) const {
    if (plan_.use == SourceUse::loaded) return position;
    // The stream writes and renders in steps; what the engine sees ends with its step's input.
    constexpr auto kStep = static_cast<std::uint64_t>(mokGranulatorSF::kMaxBlockFrames);
    const std::uint64_t inStep = (frame - block.firstFrame) / kStep * kStep + kStep;
    const std::uint64_t heard = block.firstFrame + std::min<std::uint64_t>(inStep, block.frames);
    const double age = readFrames_ - 5 - position * readFrames_; // frames behind the newest
    return (static_cast<double>(heard) - 1 - age) / sourceFrames_;
}

void PictureRecorder::add(const RenderedBlock& block) {
    picture_.addOutput(block.left, block.right, block.frames);
    GrainMap& map = picture_.map();
    for (const GrainRecord& grain : block.grains) {
        const double from = sourcePosition(grain.position, block, grain.frame);
        const double length = grain.length, rate = grain.rate;
        map.grains.push_back(
            {.start = static_cast<double>(grain.frame) / plan_.sampleRate,
             .length = std::max(length, 0.0),
             .from = from,
             .to = from + rate * std::max(length, 0.0) * readFrames_ /
                              (plan_.use == SourceUse::live ? sourceFrames_ : readFrames_),
             .semitones = rate > 0 ? 12 * std::log2(rate * readFrames_ / readRate_) : 0,
             .level = double{std::max(std::abs(grain.gainL), std::abs(grain.gainR))} *
                      double{block.amplitude},
             .dropped = grain.dropped});
    }
    picture_.addControls(plan_.secondsAt(block.firstFrame + block.frames), block.moved);
    const std::uint64_t last = block.firstFrame + block.frames - 1;
    if (last < plan_.playFrames)
        picture_.addScan({static_cast<double>(last) / plan_.sampleRate,
                          sourcePosition(block.scanPosition, block, last)});
}

void PictureRecorder::draw(Canvas& canvas, const std::string& title,
                           const RenderStatistics& statistics, const OutputFile& file) {
    picture_.draw(canvas, {.title = title,
                           .settings = settingTexts(plan_),
                           .facts = factTexts(plan_, statistics, file)});
}

} // namespace zephyra

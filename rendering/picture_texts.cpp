#include "rendering/picture_texts.h"

#include "audiounit/control_text.h"
#include "engine/envelope_menu.h"
#include "platform/text/decibels.h"
#include "platform/text/text_numbers.h"
#include "rendering/events/time_order.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kSilence = "-\u221E dB";
constexpr std::array<ControlId, 6> kAlwaysTold = {ControlId::density,  ControlId::length,
                                                  ControlId::pitch,    ControlId::rndPitch,
                                                  ControlId::scanning, ControlId::jittering};

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
    if (plan.reportsContext())
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
            "peak " + decibelText(file.peak(), kSilence),
            "rms " + decibelText(file.rms(), kSilence),
            "seed " + std::to_string(plan.seed),
            "block " + std::to_string(plan.blockFrames)};
}

} // namespace

PictureTexts pictureTexts(std::string title, const RenderPlan& plan,
                          const RenderStatistics& statistics, const OutputFile& file) {
    return {.title = std::move(title),
            .settings = settingTexts(plan),
            .facts = factTexts(plan, statistics, file)};
}

std::vector<EventMark> eventsOf(const RenderPlan& plan) {
    std::vector<EventMark> events;
    for (const TimedSetting& timed : plan.timedSettings)
        events.push_back({timed.seconds, settingText(timed.setting)});
    for (const AutomationPoint& point : plan.automation) {
        const ControlRange& range = controlRange(point.parameter);
        events.push_back(
            {point.seconds,
             std::string(point.ramp ? "\u2197 " : "") +
                 settingText({point.parameter, displayedFromLinear(range, point.linear)})});
    }
    if (plan.stopFrame) events.push_back({plan.secondsAt(*plan.stopFrame), "Stop"});
    sortByTime(events);
    return events;
}

std::string passingValueText(ControlId control, float linear) {
    const ControlRange& range = controlRange(control);
    const double value = double{displayedFromLinear(range, linear)};
    if (range.kind != ControlKind::continuous)
        return valueText(range, static_cast<float>(std::round(value)));
    const double size = std::max(std::abs(value), 0.1);
    const double step = std::pow(10.0, std::min(std::floor(std::log10(size)) - 2, 0.0));
    return valueText(range, static_cast<float>(std::round(value / step) * step));
}

} // namespace zephyra

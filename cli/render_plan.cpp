#include "cli/render_plan.h"

#include "cli/echo_tail.h"
#include "cli/text_numbers.h"
#include "platform/clock.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

float valueOf(const ControlValues& values, ControlId id) {
    return values[static_cast<std::size_t>(id)];
}

/// The source's own rate, or the nearest that can be written.
double outputRate(const RenderOptions& options, const SoundFileInfo& source) {
    return options.sampleRate.value_or(
        std::clamp(std::round(source.sampleRate), kLowestRate, kHighestRate));
}

std::uint32_t clockSeed() {
    return std::max<std::uint32_t>(currentSeconds(), 1);
}

/// Frames from when no more grains start until the last one and its repeats have sounded.
std::uint64_t tailFrames(const RenderPlan& plan) {
    const ControlValues at = controlsAt(plan, plan.playFrames - 1);
    if (valueOf(at, ControlId::echoSwitch) == 0) return 0;
    const double echo = echoTail(
        {valueOf(at, ControlId::leftDelay), valueOf(at, ControlId::leftGain)},
        {valueOf(at, ControlId::rightDelay), valueOf(at, ControlId::rightGain)}, plan.sampleRate);
    const double longestGrain =
        valueOf(at, ControlId::length) * 0.001 * (1 + 0.5 * valueOf(at, ControlId::rndLength));
    return static_cast<std::uint64_t>(std::ceil((echo + longestGrain) * plan.sampleRate));
}

bool isScanSetting(const ControlSetting& setting) {
    return setting.control == ControlId::scanning || setting.control == ControlId::scrubbingWave;
}

/// Lets the scan of live input stand behind the newest frame, unless a scan setting is given.
void standBehindInput(RenderPlan& plan) {
    if (plan.use != SourceUse::live || plan.start || plan.end ||
        std::any_of(plan.settings.begin(), plan.settings.end(), isScanSetting))
        return;
    // The newest frame stands five below the buffer's size, where the engine's reading wraps.
    const auto size = static_cast<double>(OfflineRender::kLiveFrames);
    const double behind = std::min(kLiveDistance * plan.sampleRate, size - 5);
    plan.settings.push_back({ControlId::scanning, 0.0f});
    plan.settings.push_back(
        {ControlId::scrubbingWave, static_cast<float>((size - 5 - behind) / size)});
}

Result<void> checkLiveRate(const RenderPlan& plan, const SoundFileInfo& source) {
    if (plan.use != SourceUse::live || plan.sampleRate == std::round(source.sampleRate)) return {};
    const std::string own = formatNumber(std::round(source.sampleRate));
    if (source.sampleRate < kLowestRate || source.sampleRate > kHighestRate)
        return Failure{"--live: INPUT has " + own +
                       " Hz; live input must have 8000 to 384000 Hz, so convert it first"};
    return Failure{"--live feeds INPUT at its own " + own + " Hz; leave --rate " +
                   formatNumber(plan.sampleRate) + " out"};
}

Result<void> checkTimes(const RenderPlan& plan) {
    if (plan.timedSettings.empty()) return {};
    const TimedSetting& last = plan.timedSettings.back();
    const double seconds = static_cast<double>(plan.frames) / plan.sampleRate;
    if (last.seconds < kMostSeconds && dueFrame(last.seconds, plan.sampleRate) < plan.frames)
        return {};
    return Failure{"--at " + formatNumber(last.seconds) + ":" + settingText(last.setting) +
                   " comes after the end at " + formatFixed(seconds, 3) +
                   " s; choose an earlier time or lengthen the render with --seconds"};
}

} // namespace

ControlValues controlsAt(const RenderPlan& plan, std::uint64_t frame) {
    ControlValues values{};
    for (const ControlRange& range : controlRanges())
        values[static_cast<std::size_t>(range.id)] = range.defaultValue;
    const auto apply = [&values](const ControlSetting& setting) {
        values[static_cast<std::size_t>(setting.control)] = setting.value;
    };
    for (const ControlSetting& setting : plan.settings) apply(setting);
    for (const TimedSetting& timed : plan.timedSettings)
        if (dueFrame(timed.seconds, plan.sampleRate) <= frame) apply(timed.setting);
    return values;
}

Result<RenderPlan> makeRenderPlan(const RenderOptions& options, const SoundFileInfo& source) {
    RenderPlan plan{.sampleRate = outputRate(options, source),
                    .playFrames = 0,
                    .frames = 0,
                    .blockFrames = options.blockFrames,
                    .seed = options.seed ? *options.seed : clockSeed(),
                    .envelope = options.envelope,
                    .use = options.live ? SourceUse::live : SourceUse::loaded,
                    .settings = options.settings,
                    .timedSettings = options.timedSettings,
                    .start = options.start,
                    .end = options.end};
    standBehindInput(plan);
    const double ownSeconds = static_cast<double>(source.frames) / source.sampleRate;
    const double frames = std::round(options.seconds.value_or(ownSeconds) * plan.sampleRate);
    plan.playFrames = static_cast<std::uint64_t>(std::max(frames, 1.0));
    plan.frames = plan.playFrames + (options.seconds ? 0 : tailFrames(plan));

    if (const auto fits = checkLiveRate(plan, source); !fits) return Failure{fits.message()};
    if (const auto fits = checkTimes(plan); !fits) return Failure{fits.message()};
    return plan;
}

} // namespace zephyra

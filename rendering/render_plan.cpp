#include "rendering/render_plan.h"

#include "audiounit/control_text.h"
#include "effects/echo_tail.h"
#include "library/bank_edits.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/text/text_numbers.h"
#include "rendering/events/take_file.h"
#include "rendering/render_seed.h"
#include "stream/echo_sync.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

float valueOf(const ControlValues& values, ControlId id) {
    return values[static_cast<std::size_t>(id)];
}

/// The source's own rate, or the nearest that can be written.
double outputRate(const RenderRequest& request, const SoundFileInfo& source) {
    return request.sampleRate.value_or(
        std::clamp(std::round(source.sampleRate), kLowestRate, kHighestRate));
}

/// While grains start.
double lastTempo(const RenderPlan& plan) {
    double tempo = plan.host.tempo.value_or(kDefaultTempo);
    for (const TimedMusic& music : plan.music)
        if (dueFrame(music.seconds, plan.sampleRate) < plan.playFrames) tempo = music.tempo;
    return tempo;
}

EchoSide echoSide(const RenderPlan& plan, const ControlValues& at, ControlId delay,
                  ControlId subdivision, ControlId gain) {
    const bool synced = valueOf(at, ControlId::echoSync) != 0;
    const double seconds =
        synced
            ? syncedEchoSeconds(lastTempo(plan), static_cast<std::size_t>(valueOf(at, subdivision)))
            : double{valueOf(at, delay)};
    return {seconds * plan.echoRate, valueOf(at, gain)};
}

/// Frames from when no more grains start until the last one and its repeats have sounded.
std::uint64_t tailFrames(const RenderPlan& plan) {
    const ControlValues at = controlsAt(plan, plan.playFrames - 1);
    const bool echoes = valueOf(at, ControlId::echoSwitch) != 0;
    if (!echoes && !plan.ringsOut) return 0;
    const double echo = !echoes
                            ? 0.0
                            : echoTail(echoSide(plan, at, ControlId::leftDelay,
                                                ControlId::leftSubdivision, ControlId::leftGain),
                                       echoSide(plan, at, ControlId::rightDelay,
                                                ControlId::rightSubdivision, ControlId::rightGain),
                                       plan.sampleRate);
    const double longestGrain =
        valueOf(at, ControlId::length) * 0.001 * (1 + 0.5 * valueOf(at, ControlId::rndLength));
    return static_cast<std::uint64_t>(std::ceil((echo + longestGrain) * plan.sampleRate));
}

/// Of program changes that are left out; empty for none.
std::string programsNotice(const HostRequest& host, const std::vector<TimedMidi>& messages) {
    const auto programs = std::ranges::count_if(messages, [](const TimedMidi& timed) {
        return MidiMessage{timed.bytes}.kind() == MidiKind::program;
    });
    if (host.programs || programs == 0) return {};
    return inputTitle(*host.midi) + ": " + std::to_string(programs) + " program change" +
           (programs == 1 ? " chooses no preset; add --programs if it should"
                          : "s choose no presets; add --programs if they should");
}

/// Its keys are those of presets, which as a state would all be unknown.
bool isBank(const PropertyDictionary& list) {
    return std::ranges::any_of(
        list, [](const auto& entry) { return snapshotTag(entry.second).has_value(); });
}

/// What stands at the file's begin is what the host begins with.
void followMusic(std::vector<TimedMusic>& music, RenderPlan& plan) {
    if (!music.empty() && music.front().seconds == 0) {
        plan.host.tempo = music.front().tempo;
        if (music.front().meter) plan.host.meter = music.front().meter;
        music.erase(music.begin());
    }
    plan.music = std::move(music);
}

Result<void> readFiles(const HostRequest& host, const StreamedFiles& streams, RenderPlan& plan) {
    const double tempo = host.tempo.value_or(kDefaultTempo);
    if (host.automation) {
        auto points = readAutomation(*host.automation, tempo, streams);
        if (!points) return Failure{"--automate: " + points.message()};
        plan.automation = std::move(points.value());
    }
    if (host.midi) {
        auto file = readMidiFile(*host.midi, host.tempo, streams,
                                 host.midiTempo ? ToldTempo::begins : ToldTempo::holds);
        if (!file) return Failure{"--midi: " + file.message()};
        if (host.midiTempo) followMusic(file.value().music, plan);
        plan.midi = std::move(file.value().messages);
        plan.notices = std::move(file.value().notices);
        if (std::string notice = programsNotice(host, plan.midi); !notice.empty())
            plan.notices.push_back(std::move(notice));
    }
    if (host.state) {
        auto state = readPropertyListFile(*host.state, {}, streams);
        if (!state) return Failure{"--state: " + state.message()};
        if (isBank(state.value()))
            return Failure{"--state: " + inputTitle(*host.state) +
                           " is a bank of presets; name it with --bank, and one of them with "
                           "--preset"};
        plan.state = std::move(state.value());
    }
    if (plan.motion.scrub) {
        auto take = readTake(*plan.motion.scrub, streams);
        if (!take) return Failure{"--scrub: " + take.message()};
        plan.take = std::move(take.value());
    }
    return {};
}

/// A take is read back only with two positions in it.
Result<void> checkRecordedTake(const RenderPlan& plan) {
    const double seconds = plan.secondsAt(plan.playFrames);
    if (!plan.motion.recordScrub || seconds * ScrubRecorder::kPointsPerSecond > kLeastTakePoints)
        return {};
    return Failure{"--record-scrub keeps 15 positions a second, and the grains play for " +
                   formatFixed(seconds, 3) + " s only; lengthen the render with --seconds"};
}

} // namespace

ControlValues defaultControlValues() {
    ControlValues values{};
    for (const ControlRange& range : controlRanges())
        values[static_cast<std::size_t>(range.id)] = range.defaultValue;
    return values;
}

ControlValues controlsAt(const RenderPlan& plan, std::uint64_t frame) {
    ControlValues values = plan.initial;
    for (const TimedSetting& timed : plan.timedSettings)
        if (dueFrame(timed.seconds, plan.sampleRate) <= frame)
            values[static_cast<std::size_t>(timed.setting.control)] = timed.setting.value;
    for (const ControlSetting& one : plan.swept)
        values[static_cast<std::size_t>(one.control)] = one.value;
    const auto lanes = automationLanes(plan.automation, [&values](ControlId id) {
        return linearFromDisplayed(controlRange(id), values[static_cast<std::size_t>(id)]);
    });
    for (const AutomationLane& lane : lanes)
        values[static_cast<std::size_t>(lane.parameter())] = displayedFromLinear(
            controlRange(lane.parameter()), lane.valueAt(plan.secondsAt(frame)));
    return values;
}

Result<RenderPlan> makeRenderPlan(const RenderRequest& request, const SoundFileInfo& input,
                                  const Clock& clock) {
    const bool live = !request.isInstrument() && !request.host.sample;
    RenderPlan plan{.sampleRate = outputRate(request, input),
                    .playFrames = 0,
                    .frames = 0,
                    .blockFrames = request.blockFrames,
                    .seed = request.seed ? *request.seed : clockSeed(clock),
                    .envelope = request.envelope,
                    .steadyLevel = request.steadyLevel,
                    .quality = request.quality,
                    .use = live ? SourceUse::live : SourceUse::loaded,
                    .settings = request.settings,
                    .timedSettings = request.timedSettings,
                    .start = request.start,
                    .end = request.end,
                    .host = request.host,
                    .motion = request.motion,
                    .addTail = !request.seconds || request.ringsOut,
                    .ringsOut = request.ringsOut};
    plan.clock = clock;
    plan.host.type = request.componentType();
    plan.wetOnly = request.live && !request.host.type;
    plan.preset = request.preset;
    plan.turnsLiveOn = request.preset && live && (request.live || !request.preset->hasSound);
    plan.isSaved = request.savedPreset.has_value();
    if (const auto read = readFiles(request.host, *request.streams, plan); !read)
        return Failure{read.message()};
    if (plan.state && !request.seed) plan.seed = stateSeed(*plan.state).value_or(plan.seed);
    const double ownSeconds = static_cast<double>(input.frames) / input.sampleRate;
    const double frames = std::round(request.seconds.value_or(ownSeconds) * plan.sampleRate);
    plan.playFrames = static_cast<std::uint64_t>(std::max(frames, 1.0));
    plan.frames = plan.playFrames;
    if (request.host.fadeOut) {
        const std::uint64_t fade = dueFrame(*request.host.fadeOut, plan.sampleRate);
        plan.stopFrame = plan.playFrames - std::min(fade, plan.playFrames);
    }
    return plan;
}

Result<void> checkInputRate(const RenderRequest& request, const SoundFileInfo& input) {
    if (request.isInstrument() || outputRate(request, input) == std::round(input.sampleRate))
        return {};
    const std::string own = formatNumber(std::round(input.sampleRate));
    if (input.sampleRate < kLowestRate || input.sampleRate > kHighestRate)
        return Failure{"INPUT has " + own +
                       " Hz; an effect's input must have 8000 to 384000 Hz, so convert it first"};
    return Failure{"an effect is fed INPUT at its own " + own + " Hz; leave --rate " +
                   formatNumber(*request.sampleRate) + " out"};
}

void addEchoTail(RenderPlan& plan) {
    if (plan.addTail) plan.frames = plan.playFrames + tailFrames(plan);
    plan.addTail = false;
}

Result<void> checkTimes(const RenderPlan& plan) {
    const auto& freeze = plan.host.freezeSeconds;
    if (freeze && dueFrame(*freeze, plan.sampleRate) >= plan.playFrames)
        return Failure{"--freeze " + formatNumber(*freeze) + " comes after the grains' end at " +
                       formatFixed(plan.secondsAt(plan.playFrames), 3) +
                       " s; choose an earlier time or lengthen the render with --seconds"};
    if (plan.host.fadeOut && dueFrame(*plan.host.fadeOut, plan.sampleRate) > plan.playFrames)
        return Failure{"--fade-out " + formatNumber(*plan.host.fadeOut) +
                       " is longer than the grains play, which is " +
                       formatFixed(plan.secondsAt(plan.playFrames), 3) +
                       " s; choose a shorter fade or lengthen the render with --seconds"};
    if (const auto fits = checkRecordedTake(plan); !fits) return fits;
    if (plan.timedSettings.empty()) return {};
    const TimedSetting& last = plan.timedSettings.back();
    if (last.seconds < kMostSeconds && dueFrame(last.seconds, plan.sampleRate) < plan.frames)
        return {};
    const ControlRange& control = controlRange(last.setting.control);
    return Failure{"--at " + formatNumber(last.seconds) + ":" + control.name + "=" +
                   valueText(control, last.setting.value) + " comes after the end at " +
                   formatFixed(plan.secondsAt(plan.frames), 3) +
                   " s; choose an earlier time or lengthen the render with --seconds"};
}

} // namespace zephyra

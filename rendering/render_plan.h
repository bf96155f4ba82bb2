// RenderPlan: everything that decides the sound of a render.
#pragma once

#include "platform/clock.h"
#include "platform/lists/property_list.h"
#include "platform/sound/sound_file.h"
#include "platform/text/result.h"
#include "rendering/events/automation_lane.h"
#include "rendering/events/midi_file.h"
#include "rendering/events/time_order.h"
#include "rendering/render_request.h"
#include "stream/control_ranges.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// The displayed value of every control, by ControlId.
using ControlValues = std::array<float, kControlCount>;

// MAIN.

/// What controlRanges() says.
ControlValues defaultControlValues();

/// Whether grains are cut from a loaded sample or from the host's input.
enum class SourceUse { loaded, live };

/// A control that is moved while the render goes on.
struct MovedControl {
    ControlId control;
    std::string mover; ///< what moves it, for people: "LFO sine 0.25 Hz", "CC 1", "automation"
};

/// How much moves by itself, whether options asked for it or a state brought it.
struct MotionCounts {
    std::size_t lfos = 0;
    std::size_t controllers = 0; ///< learned ones
    std::size_t takePoints = 0;  ///< of the take that plays
};

/// The same plan and source give the same samples.
struct RenderPlan {
    double sampleRate;        ///< Hz
    std::uint64_t playFrames; ///< while grains start
    std::uint64_t frames;     ///< all, with the echo's tail
    int blockFrames;          ///< per render call; those that reach a border below are shorter
    std::uint32_t seed;       ///< from 1 up; of the grains, and of the instance's random source
    std::optional<std::size_t> envelope = {}; ///< position in the menu; none: as the state says
    bool steadyLevel = false;                 ///< also where the state has it off
    std::optional<GrainQuality> quality = {}; ///< none: as the state says
    SourceUse use = SourceUse::loaded;
    std::vector<ControlSetting> settings = {};     ///< over the defaults, in order
    std::vector<TimedSetting> timedSettings = {};  ///< sorted
    std::optional<float> start = {}, end = {};     ///< fractions of the source
    std::pair<float, float> region = {0.0f, 1.0f}; ///< the same, once it is prepared
    HostRequest host = {};
    bool wetOnly = false;                         ///< the input itself is not heard
    std::vector<AutomationPoint> automation = {}; ///< sorted
    std::vector<TimedMidi> midi = {};             ///< sorted
    std::vector<TimedMusic> music = {};           ///< sorted; what host.midiTempo brings
    std::vector<std::string> notices = {};        ///< what was odd in the files that were read
    std::optional<PropertyDictionary> state = {};
    std::optional<PresetChoice> preset = {}; ///< of the store
    bool turnsLiveOn = false;                ///< over what the preset says
    bool isSaved = false;                    ///< as a preset
    Clock clock = {};                        ///< the instance's
    MotionRequest motion = {};
    std::vector<float> take = {};                ///< of --scrub; empty: none
    bool addTail = false;                        ///< the echo's tail is still to be added to frames
    bool ringsOut = false;                       ///< the tail is that of grains, without echo too
    std::optional<std::uint64_t> stopFrame = {}; ///< where stop is pressed; none: never
    /// By LFOs, controllers and automation, the state's as well, once it is prepared.
    std::vector<MovedControl> moved = {};
    MotionCounts counts = {};
    std::vector<ControlSetting> swept = {};         ///< what LFOs move, high on each one's way
    ControlValues initial = defaultControlValues(); ///< at the first frame, once it is prepared
    double echoRate = 0; ///< Hz, at which seconds of echo become samples, once it is prepared

    bool isInstrument() const {
        return host.type.value_or(component_type::instrument) == component_type::instrument;
    }
    /// Whether the host tells the audio unit of music at all.
    bool reportsContext() const { return host.tellsOfMusic() || motion.followsTempo(); }
    double secondsAt(std::uint64_t frame) const { return static_cast<double>(frame) / sampleRate; }
};

/// What the controls stand at when the output has reached frame, all settings and automation up to
/// it applied; about what, where an LFO moves them.
ControlValues controlsAt(const RenderPlan& plan, std::uint64_t frame);

/// Fills in what the request leaves open: the source's rate and length, a seed from the state or
/// clock; reads the files that it names. Failures name the option or file.
Result<RenderPlan> makeRenderPlan(const RenderRequest& request, const SoundFileInfo& input,
                                  const Clock& clock);

/// Whether the request goes with an input of this rate; a failure is a wrong usage.
Result<void> checkInputRate(const RenderRequest& request, const SoundFileInfo& input);

/// Once plan.initial is known: adds the echo's tail where it is due.
void addEchoTail(RenderPlan& plan);

/// Once the length is known: a failure, a wrong usage, names a setting that comes after the end,
/// or a fade that does not fit.
Result<void> checkTimes(const RenderPlan& plan);

} // namespace zephyra

#include "rendering/render_motion.h"

#include "controls/note_values.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/text/text_numbers.h"
#include "stream/control_ranges.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace zephyra {

namespace {

/// Gives the wrapper of a control what was asked for.
void applyLfo(const LfoRequest& lfo, LfoWidgetWrapper& wrapper) {
    wrapper.setMinRange(lfo.min);
    wrapper.setMaxRange(lfo.max);
    wrapper.setGravity(lfo.gravity);
    if (lfo.link) {
        wrapper.setClockSub(*lfo.link);
        wrapper.setClockSubMult(lfo.mult);
    } else {
        wrapper.setHz(lfo.hz);
    }
    wrapper.setLinkIsEnabled(lfo.link.has_value());
    wrapper.setLfoShapeFromWrapper(lfo.shape); // finds the phase for this range
    if (lfo.phase) wrapper.setPhase(*lfo.phase);
}

/// "LFO sine 0.25 Hz", "LFO v 1/8T x 2".
std::string lfoText(const LfoWidgetWrapper& wrapper) {
    auto shape = static_cast<std::size_t>(wrapper.currentLFO.shape());
    if (shape >= kLfoShapes.size()) shape = kLfoLineRise; // as it sounds
    std::string text = std::string("LFO ") + kLfoShapes[shape].name;
    if (!wrapper.linkIsEnabled()) return text + " " + formatShort(wrapper.freeHz()) + " Hz";
    text += std::string(" ") + kNoteValues[static_cast<std::size_t>(wrapper.clockSub())].name;
    return wrapper.clockSubMult() == 1.0 ? text
                                         : text + " x " + formatShort(wrapper.clockSubMult());
}

} // namespace

RenderMotion::RenderMotion(Instance& instance, AudioUnitViewController& controller)
    : instance_(instance), controller_(controller) {}

/// Null for the envelope, which no control holds.
Control* RenderMotion::controlOf(ControlId id) const {
    const std::string_view name = controlRange(id).name;
    for (const AssignableControl& one : controller_.assignable.all())
        if (one.name == name) return one.control;
    return nullptr;
}

std::optional<ControlId> RenderMotion::idOf(const Control* control) const {
    for (const AssignableControl& one : controller_.assignable.all())
        if (one.control == control)
            for (const ControlRange& range : controlRanges())
                if (one.name == range.name) return range.id;
    return std::nullopt;
}

Result<void> RenderMotion::applyLfos(const RenderPlan& plan) {
    ControlManager& assignments = controller_.assignments;
    // Before the first block has told it, or a linked LFO would begin at another rate.
    if (plan.reportsContext())
        assignments.syncStateDidChangedWithBPM(plan.host.tempo.value_or(kDefaultTempo));
    for (const LfoRequest& lfo : plan.motion.lfos) {
        Control* const control = controlOf(lfo.control);
        LfoWidgetWrapper* const wrapper =
            control && assignments.assign(*control, AssignmentType::lfo)
                ? assignments.getLfoWidgetsMapping()->getWrapperID(control)
                : nullptr;
        if (!wrapper)
            return Failure{std::string("--lfo: ") + controlRange(lfo.control).name +
                           " takes no LFO; leave it out"};
        applyLfo(lfo, *wrapper);
    }
    if (plan.motion.lfos.empty()) return {};
    controller_._lfoSwitch.setOn(true); // a state may have left it off
    controller_._lfoSwitch.sendEventValueChanged();
    return {};
}

/// One thing carries the scan: what was asked for, rather than what the state brought.
void RenderMotion::clearScan(const RenderPlan& plan) {
    MOK_SCRUB_GRANULATOR& stream = controller_._GRANULATOR_STREAM;
    if (plan.motion.hasLfo(ControlId::scrubbingWave)) {
        stream.scrubRecorder.endPlaying();
        stream.scrubRecorder.disarm();
    }
    if (!plan.take.empty() &&
        controller_.assignments.typeOf(stream.scrubArea) == AssignmentType::lfo)
        controller_.assignments.assign(stream.scrubArea, AssignmentType::none);
}

Result<void> RenderMotion::apply(const RenderPlan& plan) {
    clearScan(plan);
    if (const auto done = applyLfos(plan); !done) return done;
    for (const LearnRequest& learned : plan.motion.learned) {
        MidiBinding binding = learned.binding;
        binding.control = controlOf(learned.control);
        if (!binding.control || !controller_.midiManager.bind(binding))
            return Failure{std::string("--learn: ") + controlRange(learned.control).name +
                           " learns no " + triggerText(binding.trigger) + "; leave it out"};
    }
    return {};
}

void RenderMotion::addMoved(const Control* control, const std::string& mover) {
    const auto id = idOf(control);
    if (!id) return;
    const auto known = std::find_if(moved_.begin(), moved_.end(),
                                    [id](const MovedControl& one) { return one.control == *id; });
    if (known == moved_.end())
        moved_.push_back({*id, mover});
    else if (known->mover != mover)
        known->mover += ", " + mover;
}

/// As on any instrument, unless something else learned them.
bool RenderMotion::bendsPitch(const RenderPlan& plan) const {
    const auto isBend = [](const TimedMidi& timed) {
        return MidiMessage{timed.bytes}.kind() == MidiKind::pitchBend;
    };
    const auto learned = [](const MidiBinding& binding) {
        return binding.trigger.source == MidiSource::pitchBend;
    };
    const std::vector<MidiBinding>& bindings = controller_.midiManager.bindings();
    return std::any_of(plan.midi.begin(), plan.midi.end(), isBend) &&
           std::none_of(bindings.begin(), bindings.end(), learned);
}

std::vector<MovedControl> RenderMotion::watch(const RenderPlan& plan) {
    moved_.clear();
    const LFO_WIDGETS_MAPPING& lfos = *controller_.assignments.getLfoWidgetsMapping();
    for (std::size_t i = 0; i < lfos.count(); ++i) addMoved(lfos.at(i).obj(), lfoText(lfos.at(i)));
    for (const MidiBinding& binding : controller_.midiManager.bindings())
        addMoved(binding.control, triggerText(binding.trigger));
    if (bendsPitch(plan)) addMoved(controlOf(ControlId::pitch), "Pitch Bend");
    for (const AutomationPoint& point : plan.automation)
        addMoved(controlOf(point.parameter), "automation");
    return moved_;
}

std::vector<ControlSetting> RenderMotion::sweptControls() const {
    std::vector<ControlSetting> swept;
    const LFO_WIDGETS_MAPPING& lfos = *controller_.assignments.getLfoWidgetsMapping();
    for (std::size_t i = 0; i < lfos.count(); ++i) {
        const auto id = idOf(lfos.at(i).obj());
        if (!id) continue;
        const ControlRange& range = controlRange(*id);
        const auto [low, high] = std::minmax({lfos.at(i).minRange(), lfos.at(i).maxRange()});
        const float linear = std::lerp(range.minimum, range.maximum, std::lerp(low, high, 0.75f));
        swept.push_back({*id, displayedFromLinear(range, linear)});
    }
    return swept;
}

MotionCounts RenderMotion::counts(const RenderPlan& plan) const {
    const MOK_SCRUB_GRANULATOR& stream = controller_._GRANULATOR_STREAM;
    const bool plays = stream.controls.scrubPlay.tag == 1; // as the state says
    return {.lfos = controller_.assignments.getLfoWidgetsMapping()->count(),
            .controllers = controller_.midiManager.bindings().size(),
            .takePoints = !plan.take.empty() ? plan.take.size()
                          : plays            ? stream.scrubRecorder.take().size()
                                             : 0};
}

std::span<const float> RenderMotion::values() {
    values_.clear();
    for (const MovedControl& one : moved_) {
        const auto* const knob = dynamic_cast<const MOK_KNOB*>(controlOf(one.control));
        values_.push_back(knob ? knob->value()
                               : controller_._GRANULATOR_STREAM.linear(one.control));
    }
    return values_;
}

void RenderMotion::start(const RenderPlan& plan) {
    MOK_SCRUB_GRANULATOR& stream = controller_._GRANULATOR_STREAM;
    if (!plan.take.empty()) {
        stream.scrubRecorder.setTake(plan.take);
        stream.scrubRecorder.____playScrubRec();
        stream.setScrubNormalizedValue(plan.take.front()); // its first tick comes 1/15 s later
    }
    if (!plan.motion.recordScrub) return;
    // Posted like the playing of a take: at each tick the take moves the scan first.
    instance_.runLoop.post([this, &stream] {
        recorder_.emplace(instance_.runLoop, [&stream] { return stream.getTimePhasor(); });
    });
}

void RenderMotion::stopRecording() {
    if (!recorder_) return;
    const RunLoop::Scope main(instance_.runLoop);
    recorder_->stop();
}

} // namespace zephyra

#include "screens/model/path/knob_face.h"

#include "modulation/lfo.h"
#include "platform/text/text_numbers.h"

#include <algorithm>

namespace zephyra {

namespace {

// So long after its last value a host counts as moving a control: longer than a slow automation's
// steps, shorter than a player's patience.
constexpr double kHostHolds = 1.5; // seconds

bool isOff(const StreamControls& controls, ControlId id) {
    switch (id) {
    case ControlId::leftDelay:
    case ControlId::rightDelay:
    case ControlId::leftGain:
    case ControlId::rightGain:
    case ControlId::leftSubdivision:
    case ControlId::rightSubdivision:
        return !controls._echoSwitch.isOn();
    case ControlId::ringModulationFrequency:
    case ControlId::ringModulationAmount:
        return !controls._rmSwitch.isOn();
    default:
        return false;
    }
}

std::string atPlace(const MOK_KNOB& knob, ControlId id, float place) {
    const ControlRange& range = controlRange(id);
    const float linear = knob.minimumValue() + place * (knob.maximumValue() - knob.minimumValue());
    return knobText(range, displayedFromLinear(range, linear)).whole();
}

std::string lfoText(const LfoWidgetWrapper& lfo) {
    const auto shape = static_cast<std::size_t>(lfo.currentLFO.shape());
    const char* const name = shape < kLfoShapes.size() ? kLfoShapes[shape].name : "rise";
    return std::string("LFO, ") + name + ", " + formatShort(lfo.currentLFO.hz()) + " Hz";
}

} // namespace

bool KnobMemory::hostMoves(AudioUnitViewController& view, ControlId id, double now) {
    const std::uint32_t moves = view.hostMoves(id);
    if (hostMoves_ && *hostMoves_ != moves) hostMovesUntil_ = now + kHostHolds;
    hostMoves_ = moves;
    return now < hostMovesUntil_;
}

/// An LFO knows itself where the control was set.
void KnobMemory::remember(const MOK_KNOB& knob, const KnobBond& bond) {
    if (!bond.drives || knob.isTracking()) setAt_ = knob.valueNorm();
    if (bond.base) setAt_ = bond.base;
}

/// Modulation steps 32 times a second, a display shows 60 pictures: one step late, and evenly.
float KnobMemory::glide(float to, bool glides, double now) {
    const double part = std::clamp((now - glideBegan_) / kLfoTick, 0.0, 1.0);
    const float shown = glidesFrom_ + static_cast<float>(part) * (glidesTo_ - glidesFrom_);
    if (!glides) return glidesFrom_ = glidesTo_ = to;
    if (to == glidesTo_) return part < 1.0 ? shown : to;
    glidesFrom_ = shown;
    glidesTo_ = to;
    glideBegan_ = now;
    return shown;
}

KnobFace KnobMemory::read(AudioUnitViewController& view, ControlId id, double now) {
    MOK_KNOB* const knob = view.knob(id);
    if (!knob) return {};
    KnobBond bond = bondOf(view, *knob);
    if (hostMoves(view, id, now) && !bond.drives)
        bond = {.by = KnobMover::host, .sign = {}, .from = {}, .to = {}, .drives = true};
    remember(*knob, bond);
    const StreamControls& controls = view._GRANULATOR_STREAM.controls;
    return {.text = knobText(controlRange(id), knob->displayedValue()),
            .arc = glide(knob->valueNorm(), bond.drives && !knob->isTracking(), now),
            .isBipolar = knob->minimumValue() < 0.0f,
            .setAt = bond.drives ? setAt_ : std::nullopt,
            .from = bond.from,
            .to = bond.to,
            .by = bond.by,
            .sign = bond.sign,
            .drives = bond.drives,
            .isLearning = view.midiManager.learning() == knob,
            .isOff = isOff(controls, id),
            .isLocked = view.locks.isLocked(id),
            .isHeld = knob->isTracking()};
}

std::string knobMoverText(AudioUnitViewController& view, ControlId id, const KnobFace& face) {
    MOK_KNOB* const knob = view.knob(id);
    if (!knob) return {};
    const KnobBond bond = bondOf(view, *knob);
    const std::string set =
        face.drives && face.setAt ? ", set to " + atPlace(*knob, id, *face.setAt) : "";
    if (face.by == KnobMover::host) return "moves by the host's automation" + set;
    if (bond.by == KnobMover::none) return {};
    std::string text = assignmentEntry(view.assignments.typeOf(*knob))->title;
    if (bond.by == KnobMover::midi) text = "MIDI " + bond.sign;
    if (bond.by == KnobMover::lfo)
        if (const auto* lfo = view.assignments.getLfoWidgetsMapping()->getWrapperID(knob))
            text = lfoText(*lfo);
    if (bond.from)
        text += ", " + atPlace(*knob, id, *bond.from) + " to " + atPlace(*knob, id, *bond.to);
    return (bond.drives ? "moves by " : "follows ") + text + set;
}

} // namespace zephyra

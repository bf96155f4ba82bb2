#include "fuzz/played_system.h"

namespace zephyra {
namespace {

bool isFraction(float x) {
    return x >= 0.0f && x <= 1.0f;
}

bool isInRange(const Control& control) {
    const auto* const knob = dynamic_cast<const MOK_KNOB*>(&control);
    return !knob ||
           (knob->value() >= knob->minimumValue() && knob->value() <= knob->maximumValue());
}

std::string recorderFault(const MOK_SCRUB_GRANULATOR& stream) {
    const auto take = stream.scrubRecorder.take();
    if (take.size() > ScrubRecorder::kPoints) return "the take is too long";
    if (!std::all_of(take.begin(), take.end(), isFraction)) return "the take leaves 0..1";
    if (stream.controls.scrubRec.tag == 1 && stream.controls.scrubPlay.tag == 1)
        return "the recorder records and plays";
    return isFraction(stream.controls.scrubRecIndicator.progress())
               ? ""
               : "the take's progress leaves 0..1";
}

/// Who really moves control, or what the table says when nobody does. Two are nobody's type.
AssignmentType driverOf(AudioUnitViewController& view, Control& control) {
    const AssignmentType said = view.assignments.typeOf(control);
    ScrubWidgets& scrub = view.scrubWidgets;
    const auto& bindings = view.midiManager.bindings();
    const bool isBound = std::any_of(bindings.begin(), bindings.end(), [&](const auto& binding) {
        return binding.control == &control;
    });
    std::vector<AssignmentType> drivers;
    if (view.assignments.getLfoWidgetsMapping()->getWrapperID(&control))
        drivers.push_back(AssignmentType::lfo);
    if (scrub.getWrapperID(&control))
        drivers.push_back(scrub.followsSecondFinger(&control) ? AssignmentType::secondFinger
                                                              : AssignmentType::scrubY);
    if (view.tiltWidgets.getWrapperID(&control))
        drivers.push_back(view.tiltWidgets.axisOf(&control) == Accelerometer::Axis::x
                              ? AssignmentType::accelX
                              : AssignmentType::accelY);
    if (isBound) drivers.push_back(AssignmentType::midi);
    if (drivers.size() > 1) return AssignmentType{-1};
    return drivers.empty() ? said : drivers.front();
}

} // namespace

std::string firstFault(AudioUnitViewController& view) {
    for (const AssignableControl& listed : view.assignable.all()) {
        if (!isInRange(*listed.control)) return listed.name + " leaves its range";
        if (driverOf(view, *listed.control) != view.assignments.typeOf(*listed.control))
            return listed.name + " is driven by whom the table does not name";
    }
    const MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
    if (!isFraction(stream.getTimePhasor())) return "the scan leaves 0..1";
    const MOK_PAD& pad = view.surfaces._pad;
    if (!isFraction(pad.xValue()) || !isFraction(pad.yValue())) return "the pad leaves 0..1";
    const double tempo = view.assignments.tempo.value();
    if (!(tempo >= MOK_TAP::kLowestTempo && tempo <= MOK_TAP::kHighestTempo))
        return "the tapped tempo leaves its range";
    return recorderFault(stream);
}

} // namespace zephyra

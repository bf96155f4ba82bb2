// The mapping panel, the LFO clock's controls and the tempo of ControlManager.

#include "controls/note_values.h"
#include "controls/state_keys.h"
#include "modulation/control_manager.h"
#include "modulation/scrub_widget_wrapper.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kDimmed = 0.33f; // of the free rate's controls while the LFO follows the tempo

std::vector<std::string> noteValueNames() {
    std::vector<std::string> names;
    for (const NoteValue& note : kNoteValues) names.emplace_back(note.name);
    return names;
}

} // namespace

void ControlManager::addLfoControls() {
    subdivisions.setNames(noteValueNames());
    subdivisionsMultiplication.setRange(static_cast<float>(LfoWidgetWrapper::kLeastMult),
                                        static_cast<float>(LfoWidgetWrapper::kMostMult));
    subdivisionsMultiplication.setDefaultValue(1.0f);
    showInControls();

    const auto subdivide = [this](Control&) {
        setClockSubdivision(subdivisions.index(), double{subdivisionsMultiplication.value()});
    };
    using namespace control_event;
    for (MOK_KNOB* const knob :
         {static_cast<MOK_KNOB*>(&subdivisions), &subdivisionsMultiplication})
        knob->addTarget(this, "setClockSubdivision", valueChanged, subdivide);
    LFO_LINK_TOGGLE.addTarget(this, "toggleLFO_HZ_TO_LINK", valueChanged,
                              [this](Control&) { toggleLFO_HZ_TO_LINK(LFO_LINK_TOGGLE.isOn()); });
    lfo_sync_local.addTarget(this, "resetPhaseCurrent", touchUpInside,
                             [this](Control&) { resetPhaseCurrent(); });
    lfo_sync_all.addTarget(this, "resetPhaseAll", touchUpInside,
                           [this](Control&) { resetPhaseAll(); });
    tempo.addTarget(this, "BPM_LOCAL", valueChanged, [this](Control&) {
        BPM_LOCAL = tempo.value();
        if (!BPM_LINK) followTempo();
    });
}

void ControlManager::closePanel() {
    panel = {};
}

void ControlManager::performMapping(std::int64_t segment) {
    if (!panel.control) return;
    const auto type = static_cast<AssignmentType>(segment);
    if (!assignmentEntry(type)) {
        instance_.log.write("There is no modulation source " + std::to_string(segment) +
                            "; they are 0 to " + std::to_string(kAssignments.size() - 1));
        return;
    }
    assign(*panel.control, type);
}

void ControlManager::updateMappingParametersFromWrappers() {
    const auto index = panel.control ? indexOf(*panel.control) : std::nullopt;
    if (!index) return;
    MappingPanel shown;
    shown.shown = panel.shown;
    shown.control = panel.control;
    shown.currentIndexPath = *index;
    shown.segment = static_cast<std::int64_t>(typeAt(*index));
    panel = shown;

    textFromWrappers(*index);
    const std::vector<WidgetWrapper*> wrappers = selectedWrappers();
    if (!wrappers.empty()) {
        panel.information = std::string(assignmentEntry(boundTo(*panel.control))->assigned) +
                            " for '" + names_[*index] + "'";
        panel.minRange = wrappers.front()->minRange();
        panel.maxRange = wrappers.front()->maxRange();
        panel.gravity = wrappers.front()->gravity();
        if (const LfoWidgetWrapper* const lfo = selectedLfo())
            fillFromLfo(*lfo);
        else
            fillFromScrub(wrappers.front()->state());
    }
    panel.realRange = setMinMaxRealRangeLabel();
    showInControls();
}

void ControlManager::fillFromScrub(const PropertyDictionary& state) {
    panel.sliderTitle = "Scrub Velocity";
    panel.sliderMinimum = ScrubWidgetWrapper::kLeastVelocity;
    panel.sliderMaximum = ScrubWidgetWrapper::kMostVelocity;
    panel.slider = PropertyReader(state).real(wrapper_key::kVelocity).value_or(1.0);
}

void ControlManager::fillFromLfo(const LfoWidgetWrapper& wrapper) {
    panel.sliderTitle = "Low Frequency Oscillator in Hz";
    panel.sliderMinimum = kLowestLfoRate;
    panel.sliderMaximum = kHighestLfoRate;
    panel.slider = wrapper.freeHz();
    panel.shape = wrapper.currentLFO.shape();
    panel.linked = wrapper.linkIsEnabled();
    panel.clockSub = wrapper.clockSub();
    panel.clockSubMult = wrapper.clockSubMult();
    panel.freeRateAlpha = panel.linked ? kDimmed : 1.0f;
}

// Sends nothing: what the panel takes from an LFO must not go back to it.
void ControlManager::showInControls() {
    subdivisions.setValue(static_cast<float>(panel.clockSub));
    subdivisionsMultiplication.setValue(static_cast<float>(panel.clockSubMult));
    LFO_LINK_TOGGLE.setOn(panel.linked);
}

// Of a scrub there is one for every stream; all of them move together.
std::vector<WidgetWrapper*> ControlManager::selectedWrappers() const {
    if (!panel.control) return {};
    if (LfoWidgetWrapper* const lfo = selectedLfo()) return {lfo};
    std::vector<WidgetWrapper*> wrappers;
    for (ScrubReference* const reference : scrubRef)
        if (WidgetWrapper* const wrapper = reference->getWrapperID(panel.control))
            wrappers.push_back(wrapper);
    return wrappers;
}

LfoWidgetWrapper* ControlManager::selectedLfo() const {
    return panel.control ? _lfo.getWrapperID(panel.control) : nullptr;
}

void ControlManager::setMinMax(float min, float max) {
    for (WidgetWrapper* const wrapper : selectedWrappers()) {
        wrapper->setMinRange(min);
        wrapper->setMaxRange(max);
    }
    updateMappingParametersFromWrappers();
}

void ControlManager::setGravity(float gravity) {
    for (WidgetWrapper* const wrapper : selectedWrappers()) wrapper->setGravity(gravity);
    updateMappingParametersFromWrappers();
}

void ControlManager::setVelocityOrRate(double value) {
    if (!panel.control || !std::isfinite(value)) return;
    if (LfoWidgetWrapper* const lfo = selectedLfo()) {
        lfo->setHz(std::clamp(value, kLowestLfoRate, kHighestLfoRate));
    } else {
        const double velocity = std::clamp(value, ScrubWidgetWrapper::kLeastVelocity,
                                           ScrubWidgetWrapper::kMostVelocity);
        const PropertyDictionary state{{wrapper_key::kVelocity, velocity}};
        PropertyReader reader(state);
        for (WidgetWrapper* const wrapper : selectedWrappers()) wrapper->applyState(reader);
    }
    updateMappingParametersFromWrappers();
}

std::string ControlManager::setMinMaxRealRangeLabel() const {
    if (!panel.control) return {};
    double low = 0.0, high = 1.0;
    if (const auto* const knob = dynamic_cast<const MOK_KNOB*>(panel.control)) {
        low = double{knob->minimumValue()};
        high = double{knob->maximumValue()};
    }
    const auto at = [&](float fraction) {
        return formatFixed(low + double{fraction} * (high - low), 3);
    };
    return "Widget Range min = " + at(panel.minRange) + " max = " + at(panel.maxRange);
}

void ControlManager::setLfoShape(std::int64_t shape) {
    if (LfoWidgetWrapper* const lfo = selectedLfo()) lfo->setLfoShapeFromWrapper(shape);
    updateMappingParametersFromWrappers();
}

void ControlManager::toggleLFO_HZ_TO_LINK(bool linked) {
    if (LfoWidgetWrapper* const lfo = selectedLfo()) lfo->setLinkIsEnabled(linked);
    updateMappingParametersFromWrappers();
}

void ControlManager::setClockSubdivision(int clockSub, double clockSubMult) {
    if (LfoWidgetWrapper* const lfo = selectedLfo()) {
        lfo->setClockSub(clockSub);
        lfo->setClockSubMult(clockSubMult);
    }
    updateMappingParametersFromWrappers();
}

void ControlManager::resetPhaseAll() {
    resetPhaseAllAtValue(0.0);
}

void ControlManager::resetPhaseAllAtValue(double phase) {
    for (std::size_t i = 0; i < _lfo.count(); ++i) _lfo.at(i).setPhase(phase);
}

void ControlManager::resetPhaseCurrent() {
    if (LfoWidgetWrapper* const lfo = selectedLfo()) lfo->setPhase(0.0);
}

// --- Tempo ---

double ControlManager::currentTempo() const {
    return BPM_LINK.value_or(BPM_LOCAL);
}

void ControlManager::syncStateDidChangedWithBPM(double bpm) {
    BPM_LINK.reset();
    if (std::isfinite(bpm) && bpm > 0.0) BPM_LINK = bpm;
    followTempo();
}

// Posted, so that nobody waits for it; of many changes at once the last one counts.
void ControlManager::followTempo() {
    if (tempoPosted_) return;
    tempoPosted_ = true;
    onMain([this] {
        tempoPosted_ = false;
        _lfo.setTempo(currentTempo());
    });
}

} // namespace zephyra

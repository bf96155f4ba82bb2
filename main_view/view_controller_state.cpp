// The view controller's state: the stream's, and the controls that are its own.
#include "main_view/audio_unit_view_controller.h"
#include "stream/stream_state.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zephyra {

namespace {

template <typename Knob>
using OwnKnobs = std::array<Knob*, 3>;

} // namespace

PropertyDictionary AudioUnitViewController::getState() {
    PropertyDictionary state = unknownState_;
    saveStreamState(_GRANULATOR_STREAM, state);
    for (const MOK_KNOB* knob :
         OwnKnobs<const MOK_KNOB>{&_inputDryWetKnob, &_fadeInTime, &_fadeOutTime})
        state.insert_or_assign(knob->channel, knob->value());
    saveModulation(state);
    return state;
}

void AudioUnitViewController::restoreState(PropertyDictionary state) {
    instance_.runLoop.post([this, alive = std::weak_ptr(alive_), state = std::move(state)] {
        if (!alive.expired()) restoreStateProc(state);
    });
}

void AudioUnitViewController::restoreStateProc(const PropertyDictionary& state) {
    PropertyReader reader(state);
    restoreStreamState(_GRANULATOR_STREAM, sampleLoader, reader);
    for (MOK_KNOB* knob : OwnKnobs<MOK_KNOB>{&_inputDryWetKnob, &_fadeInTime, &_fadeOutTime}) {
        const auto value = reader.real(knob->channel);
        if (!value || knob->skipFromPreset) continue;
        const double held = std::clamp(*value, double{knob->minimumValue()},
                                       double{knob->maximumValue()}); // may be beyond any float
        knob->setValue(static_cast<float>(held));
        knob->sendEventValueChanged();
    }
    restoreModulation(reader); // last: an LFO goes on from where its control stands
    unknownState_ = reader.unknown();
    refreshParameters(); // the scan's position has no control that tells the host
}

} // namespace zephyra

// PlayedSystem: a whole system as an offline host loads it, for what attacks it.
#pragma once

#include "hosting/midi_inlet.h"
#include "hosting/offline_host.h"
#include "main_view/audio_unit_view_controller.h"

#include <cstdint>
#include <memory>

namespace zephyra {

/// Nothing is in its folders, and its seed is 1. MIDI reaches the unit and the controls.
struct PlayedSystem {
    PlayedSystem(FourCharCode type, const HostSetup& setup)
        : unit(MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                       instance, error)),
          view(instance),
          inlet(instance, [this](const MidiMessage& message) { view.receiveMidi(message); }),
          host(*unit, instance) {
        instance.folders = {"/nonexistent/shared", "/nonexistent/resources"};
        view.setAudioUnit(unit.get());
        view._GRANULATOR_STREAM.setSeed(1);
        host.start(setup);
        host.setMidiInlet(&inlet);
    }

    Instance instance;
    OSStatus error = 0;
    std::unique_ptr<MyAudioUnit> unit;
    AudioUnitViewController view;
    MidiInlet inlet;
    OfflineHost host;
};

} // namespace zephyra

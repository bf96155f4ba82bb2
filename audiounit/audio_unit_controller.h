// AudioUnitController: what the audio unit asks of the view controller that belongs to it.
#pragma once

#include "platform/audio_unit/audio_unit_events.h"
#include "platform/lists/property_list.h"
#include "platform/threads/realtime.h"

#include <string>

namespace zephyra {

class MOK_KNOB;
class MOK_SCRUB_GRANULATOR;
class Modulation;

/// MAIN unless said otherwise. A controller that goes first takes itself away with
/// removeController.
class AudioUnitController {
public:
    virtual ~AudioUnitController() = default;

    virtual MOK_SCRUB_GRANULATOR* granulatorStream() = 0; ///< never null
    virtual Modulation* controlManager() = 0;             ///< null: nothing is modulated
    virtual MOK_KNOB* inputDryWetKnob() = 0;              ///< never null

    /// Wires the controls to the parameters, now that the audio unit has both.
    virtual void connectViewWithAU() = 0;
    /// Writes every control into its parameter and every effect value into the engine again.
    virtual void refreshParameters() = 0;
    /// Takes the controls' wires to the parameters away.
    virtual void removeTargets() = 0;
    /// The audio unit goes away, or to another controller: forgets it. OFF.
    virtual void audioUnitLeaves() = 0;

    /// Loads a sample that came with the program, by its file name. False when it cannot.
    virtual bool LoadSampleDelegate(const std::string& name) = 0;
    /// Whether a sample was asked for already: then no other is loaded unasked.
    virtual bool sampleWasRequested() const = 0;
    /// What a fresh effect does once LIVE went on: lets the scan stand behind the newest frame
    /// unless the scan was set meanwhile.
    virtual void standBehindInput() = 0;

    /// The whole state of sound and controls, as a session keeps it. Any thread but RENDER; it
    /// waits for MAIN, and encodes sounds without holding it, unless the caller is MAIN.
    virtual PropertyDictionary getState() = 0;
    /// Applies a state, or a preset's snapshot, later on MAIN. Any thread but RENDER.
    virtual void restoreState(PropertyDictionary state) = 0;

    /// A parameter got a new value from an event or from outside: moves what it is bound to.
    virtual void parameterMoved(AUParameterAddress address, AUValue value) = 0;

    /// A note-on of the host; only leaves a notice. RENDER.
    virtual void midiNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING = 0;
    /// The same note once MAIN has it. Velocity 0 is a release and changes nothing.
    virtual void playNote(int note, int velocity) = 0;
};

} // namespace zephyra

// HostedInstance: one instance of the system as a host loads it, built and ended in the right
// order.
#pragma once

#include "audiounit/my_audio_unit.h"
#include "hosting/midi_inlet.h"
#include "main_view/audio_unit_view_controller.h"
#include "platform/instance.h"
#include "platform/text/four_char_code.h"

#include <functional>
#include <memory>

namespace zephyra {

/// What a plug-in, the command, a test or a benchmark puts behind its own host. Order of calls:
/// construct, set what the stream is to begin with, connect, then let a host allocate and render.
/// Everything is MAIN and OFF; the members' own threads hold from then on. A host that drives the
/// unit is made later and destroyed before.
class HostedInstance {
public:
    /// What comes from outside (folders, clock, seed, log): called once on an Instance that nothing
    /// is built on yet. The store lists its folders at once, so they belong here.
    using Prepare = std::function<void(Instance&)>;

    /// type: one of component_type; any other is taken for an effect. The view controller has no
    /// unit yet. Throws std::bad_alloc.
    explicit HostedInstance(FourCharCode type, const Prepare& prepare = {});
    HostedInstance(const HostedInstance&) = delete;
    HostedInstance& operator=(const HostedInstance&) = delete;

    /// Hands the view controller and its parameters to the unit. A sound that is loaded before is
    /// kept; without one an instrument loads its demonstration sample.
    void connect() { view.setAudioUnit(unit.get()); }

    MOK_SCRUB_GRANULATOR& stream() { return view._GRANULATOR_STREAM; }
    const MOK_SCRUB_GRANULATOR& stream() const { return view._GRANULATOR_STREAM; }

    Instance instance;
    std::unique_ptr<MyAudioUnit> unit; ///< outlives the view that is connected, or lets go of it
    AudioUnitViewController view;
    /// Hears of the inlet's MIDI what nothing is bound to; may be empty. MAIN.
    MidiInlet::Handler unbound;
    MidiInlet inlet; ///< hands MIDI to the view, once a host pushes into it

private:
    /// The instance, prepared; so that the unit and the view find it so.
    Instance& prepared(const Prepare& prepare);
};

} // namespace zephyra

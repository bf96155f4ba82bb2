// midiConflicts: where MIDI mappings and the choice of presets get in each other's way.
#pragma once

#include "modulation/control_manager.h"
#include "modulation/midi_binding.h"
#include "modulation/midi_manager.h"

#include <string>
#include <vector>

namespace zephyra {

/// A line for each trigger whose messages move several controls ("CC 1 moves Density and Length"),
/// each control that several triggers move ("Density is moved by CC 1 and CC 2"), each trigger that
/// takes banks or presets their messages, and for notes that choose both. Display names are those
/// of controls. MAIN.
std::vector<std::string> midiConflicts(const std::vector<MidiBinding>& bindings,
                                       const MidiManager::Navigation& navigation,
                                       const ControlManager& controls);

} // namespace zephyra

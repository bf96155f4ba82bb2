// midi_notice: the notices by which MIDI chooses banks and presets, and its manager comes and goes.
#pragma once

namespace zephyra::midi_notice {

/// Posted at an instance's NotificationCenter; the object is an int, the index chosen, from 0.
inline constexpr const char* kSelectBank = "selectBankFromMidi";
inline constexpr const char* kSelectPreset = "selectPresetFromMidi";

/// Open and close the MIDI manager; the object is whoever asks for it.
inline constexpr const char* kShowManager = "showMidiManager";
inline constexpr const char* kCloseManager = "closeMidiManager";

} // namespace zephyra::midi_notice

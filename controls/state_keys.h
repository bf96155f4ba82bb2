// state_key and its kin: the keys under which states, and with them presets, keep everything.
#pragma once

#include <string>

namespace zephyra {

// What users saved stays readable: no key ever changes, none comes back with another meaning.
// Controls stand under their channels (stream/control_ranges.h), a preset's name under
// kSnapshotTags (library/bank_edits.h).

/// Ends the channels of the one stream's controls, and its keys.
inline constexpr const char* kStreamSuffix = "_0";

/// A channel, or a key of state_key, with that suffix. Any thread.
inline std::string ofStream(const char* key) {
    return std::string(key) + kStreamSuffix;
}

/// At the top of a state.
namespace state_key {
// Of a stream, whose suffix follows.
inline constexpr const char* kSample = "Sample";     ///< a dictionary of sample_key
inline constexpr const char* kCaptured = "Captured"; ///< one of sound_key
inline constexpr const char* kNormalizeTouched = "NormalizeTouched";
inline constexpr const char* kSteadyLevel = "SteadyLevel"; ///< only where it is on
inline constexpr const char* kEchoAtOutputRate = "EchoAtOutputRate";
inline constexpr const char* kRegionStart = "RegionStart";
inline constexpr const char* kRegionEnd = "RegionEnd";
inline constexpr const char* kSeed = "Seed";
inline constexpr const char* kQuality = "Quality"; ///< in a state whose grains are not classic
inline constexpr const char* kScanPosition = "ScanPosition";
// Of the whole system.
inline constexpr const char* kControlAssignments = "ControlAssignments"; ///< of assignment_key
inline constexpr const char* kMidi = "Midi"; ///< a dictionary of midi_key
inline constexpr const char* kTilt = "Tilt"; ///< of tilt_key
inline constexpr const char* kPad = "Pad";
inline constexpr const char* kSmallKeyboardOctave = "SmallKeyboardOctave";
inline constexpr const char* kTapTempo = "TapTempo";
inline constexpr const char* kPreset = "Preset"; ///< a dictionary of selection_key
inline constexpr const char* kLocked = "Locked"; ///< channels, in a session that has such
// Of a plug-in's session.
inline constexpr const char* kStateVersion = "StateVersion"; ///< "major.minor"
inline constexpr const char* kNotesEnd = "NotesEnd";
inline constexpr const char* kStartAnew = "StartAnew";
inline constexpr const char* kFollowsPrograms = "FollowsPrograms";
inline constexpr const char* kNotesBegin = "NotesBegin";
inline constexpr const char* kEmbedSeconds = "EmbedSeconds"; ///< what goes along in it
inline constexpr const char* kProgram = "Program";
} // namespace state_key

/// Which file a sound came from.
namespace sample_key {
inline constexpr const char* kPath = "Path";
inline constexpr const char* kRelativePath = "RelativePath";
inline constexpr const char* kContentHash = "ContentHash";
inline constexpr const char* kSampleRate = "SampleRate";
inline constexpr const char* kAudio = "Audio"; ///< a dictionary of sound_key
} // namespace sample_key

/// A sound itself.
namespace sound_key {
inline constexpr const char* kFlac = "FLAC";
inline constexpr const char* kScale = "Scale";
inline constexpr const char* kSampleRate = "SampleRate";
inline constexpr const char* kFrames = "Frames";
} // namespace sound_key

/// What a control is assigned to.
namespace assignment_key {
inline constexpr const char* kName = "name"; ///< the control's, also in MIDI bindings and tilt
inline constexpr const char* kType = "type";
inline constexpr const char* kText = "text";
inline constexpr const char* kWrapperState = "WrapperState"; ///< a dictionary of wrapper_key
} // namespace assignment_key

/// How a modulation source moves a control.
namespace wrapper_key {
inline constexpr const char* kMinRange = "MinRange";
inline constexpr const char* kMaxRange = "MaxRange";
inline constexpr const char* kGravity = "Gravity";
inline constexpr const char* kVelocity = "Velocity"; // of fingers
inline constexpr const char* kSecondFinger = "SecondFinger";
inline constexpr const char* kShape = "Shape"; // of LFOs
inline constexpr const char* kLinkSwitch = "LinkSwitch";
inline constexpr const char* kClockSub = "ClockSub";
inline constexpr const char* kClockSubMult = "ClockSubMult";
inline constexpr const char* kHz = "Hz";
} // namespace wrapper_key

/// Of tilt, beside assignment_key::kName and wrapper_key.
namespace tilt_key {
inline constexpr const char* kAxis = "axis";
} // namespace tilt_key

namespace midi_key {
inline constexpr const char* kBindings = "Bindings";     ///< of the first group, with a name each
inline constexpr const char* kNavigation = "Navigation"; ///< a dictionary of the second
// A binding.
inline constexpr const char* kSource = "source";
inline constexpr const char* kNumber = "number";
inline constexpr const char* kChannel = "channel"; // of navigation, too
inline constexpr const char* kMin = "min";
inline constexpr const char* kMax = "max";
inline constexpr const char* kCurve = "curve";
inline constexpr const char* kTakeOver = "takeOver";
inline constexpr const char* kRelative = "relative";
// Navigation.
inline constexpr const char* kPrograms = "programs";
inline constexpr const char* kBanks = "banks";
inline constexpr const char* kPresetNotes = "presetNotes";
inline constexpr const char* kBankNotes = "bankNotes";
inline constexpr const char* kFirstPresetNote = "firstPresetNote";
inline constexpr const char* kFirstBankNote = "firstBankNote";
} // namespace midi_key

/// Which preset is selected.
namespace selection_key {
inline constexpr const char* kBank = "Bank";
inline constexpr const char* kKey = "Key";
} // namespace selection_key

} // namespace zephyra

// AssignmentType: what can drive a control.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// The numbers that records are saved under, and the segments of the mapping panel's selector.
/// Records may hold others, which bind nothing.
enum class AssignmentType : std::int64_t {
    none = 0,
    midi = 1,
    scrubY = 2,       ///< the first finger's vertical movement while it scrubs
    secondFinger = 3, ///< the second finger's
    accelX = 4,
    accelY = 5,
    lfo = 6,
};

/// An assignment type as people choose it.
struct AssignmentEntry {
    const char* title;
    const char* icon; ///< file name of its picture; empty for none
    /// What a control's row says while this drives it; empty where the source's own manager says
    /// it.
    const char* assigned;
};

/// By the number of the type.
inline constexpr std::array<AssignmentEntry, 7> kAssignments = {
    {{"Unassigned", "", ""},
     {"MIDI", "midi.png", ""},
     {"Scrub Y", "scrub_Y.png", "Scrub Y Assigned"},
     {"Second Finger", "second_finger.png", "Second Finger Scrub Assigned"},
     {"Accelerometer X", "accelX.png", ""},
     {"Accelerometer Y", "accelY.png", ""},
     {"LFO", "lfo.png", "LFO Assigned"}}};

/// Null for an unknown type.
constexpr const AssignmentEntry* assignmentEntry(AssignmentType type) {
    const auto index = static_cast<std::uint64_t>(type); // negative ones become large
    return index < kAssignments.size() ? &kAssignments[index] : nullptr;
}

} // namespace zephyra

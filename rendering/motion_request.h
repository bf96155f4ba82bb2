// MotionRequest: what moves the controls of a render by itself.
#pragma once

#include "modulation/lfo.h"
#include "modulation/lfo_widget_wrapper.h"
#include "modulation/midi_binding.h"
#include "stream/control_ranges.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace zephyra {

/// An LFO on a control.
struct LfoRequest {
    ControlId control;
    LfoShape shape = kLfoSine;
    double hz = LfoWidgetWrapper::kFirstRate;
    std::optional<int> link = {};     ///< position in kNoteValues; none: hz counts
    double mult = 1.0;                ///< so many of them make a cycle
    float min = 0.0f, max = 1.0f;     ///< fractions of the linear range; min may exceed max
    float gravity = 0.0f;             ///< 0..1
    std::optional<double> phase = {}; ///< 0..1; none: so that nothing jumps
};

/// A MIDI controller that moves a control.
struct LearnRequest {
    ControlId control;
    MidiBinding binding = {}; ///< without its control, which only the running system has
};

/// Plain data.
struct MotionRequest {
    std::vector<LfoRequest> lfos = {};      ///< at most one a control
    std::vector<LearnRequest> learned = {}; ///< of controls without an LFO
    std::optional<std::filesystem::path> scrub = {}, recordScrub = {}; ///< takes

    bool hasLfo(ControlId control) const;
    /// Whether an LFO follows the host's tempo.
    bool followsTempo() const;
};

/// Knobs that turn without steps, and the scan. Fades are lengths of time, which nothing hears
/// while they change.
bool canHaveLfo(ControlId control);

} // namespace zephyra

// HostRequest: what the host of a render does.
#pragma once

#include "platform/audio_unit/audio_unit_status.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <utility>

namespace zephyra {

enum class HostTransport { play, stop };

/// Plain data.
struct HostRequest {
    std::optional<FourCharCode> type = {}; ///< one of component_type; none: what the rest needs
    std::optional<std::filesystem::path> sample = {}; ///< for an effect with LIVE off
    std::optional<float> dryWet = {};                 ///< percent
    std::optional<double> tempo = {};                 ///< beats per minute
    std::optional<std::pair<int, int>> meter = {};    ///< beats of a bar, and what a beat is
    std::optional<HostTransport> transport = {};      ///< none: it has none, and grains start
    std::optional<std::pair<int, int>> scanSync = {}; ///< measures, quarters
    /// Subdivisions, left and right: positions in kNoteValues.
    std::optional<std::pair<std::size_t, std::size_t>> echoSync = {};
    std::optional<std::filesystem::path> automation = {}, midi = {}, state = {}, saveState = {};
    bool midiTempo = false; ///< tempo and meter change as midi says; those above hold until then
    bool programs = false;  ///< those of midi choose presets, and its bank selects banks
    bool freeze = false;
    /// From when on. None: a loaded sound from the start, live input once there is something to
    /// hold.
    std::optional<double> freezeSeconds = {};
    std::optional<double> fadeIn = {}, fadeOut = {}; ///< seconds

    /// Whether music is asked for, of which the host has to tell the audio unit.
    bool tellsOfMusic() const {
        return tempo || meter || midiTempo || transport || scanSync || echoSync;
    }
};

inline constexpr double kDefaultTempo = 120.0;
inline constexpr std::pair kDefaultMeter = {4, 4};
inline constexpr double kLowestTempo = 1.0, kHighestTempo = 999.0; // beats per minute

} // namespace zephyra

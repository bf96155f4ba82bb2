// HostOptions: what the host of a render does, as asked for on the command line.
#pragma once

#include "platform/audio_unit/audio_unit_status.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace CLI {
class App;
}

namespace zephyra {

/// The options as they were typed.
struct TypedHostOptions {
    std::optional<std::string> as, sample, dryWet, tempo, meter, transport, scanSync, echoSync,
        automation, midi, state, saveState, fadeIn, fadeOut;
    bool freeze = false;
};

enum class HostTransport { play, stop };

struct HostOptions {
    FourCharCode type = component_type::instrument;
    bool wetOnly = false;                             ///< --live: the input itself is not heard
    std::optional<std::filesystem::path> sample = {}; ///< for an effect with LIVE off
    std::optional<float> dryWet = {};                 ///< percent
    std::optional<double> tempo = {};                 ///< beats per minute
    std::optional<std::pair<int, int>> meter = {};    ///< beats of a bar, and what a beat is
    std::optional<HostTransport> transport = {};
    std::optional<std::pair<int, int>> scanSync = {}; ///< measures, quarters
    /// Subdivisions, left and right.
    std::optional<std::pair<std::size_t, std::size_t>> echoSync = {};
    std::optional<std::filesystem::path> automation = {}, midi = {}, state = {}, saveState = {};
    bool freeze = false;
    std::optional<double> fadeIn = {}, fadeOut = {}; ///< seconds
    bool tempoIsFollowed = false;                    ///< by an LFO

    bool isInstrument() const;
    /// Whether the host tells the audio unit of music at all.
    bool reportsContext() const {
        return tempo || meter || transport || scanSync || echoSync || tempoIsFollowed;
    }
};

inline constexpr double kDefaultTempo = 120.0;
inline constexpr int kDefaultMeter = 4;
inline constexpr double kLowestTempo = 1.0, kHighestTempo = 999.0; // beats per minute

/// Declares the options on command; typed must outlive it.
void declareHostOptions(CLI::App& command, TypedHostOptions& typed);

/// Checks every value; live is the flag --live. A failure is a wrong usage that names the option.
Result<HostOptions> checkHostOptions(const TypedHostOptions& typed, bool live);

} // namespace zephyra

// helpText: one sentence on each thing of the window, for its foot, tooltips and assistive
// technology.
#pragma once

#include "screens/model/shortcuts.h"
#include "stream/control_ranges.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zephyra {

/// What is no control of the stream, or says more than what a control does: the state it is in.
enum class HelpId : std::uint8_t {
    // The top
    play,
    playSynced,
    playArmed,
    stop,
    rewind,
    rewindSynced,
    rewindArmed,
    freeze,
    frozen,
    live,
    liveOn,
    liveUnavailable,
    liveClear,
    previousPreset,
    nextPreset,
    preset, ///< with its name
    sound,
    soundNamed,   ///< with its name
    soundLive,    ///< with its name
    soundMissing, ///< with its name
    locate,
    randomise, ///< with the amount, "25 %"
    undo,      ///< with the edit's name
    undoNothing,
    redo, ///< with the edit's name
    redoNothing,
    playA,
    playsA,
    playB,
    playsB,
    tempo, ///< with its beats a minute
    hostTempo,
    bar,
    barNow, ///< with bar and beat
    settings,
    // Stage, meter, strip
    scan,
    regionStart,
    regionEnd,
    locateOnStage,
    soundOnStage,
    missing, ///< with the file's name
    meter,
    spectrum,
    scope,
    // The path, besides controls
    voices,
    keepLive,
    envelopes,
    value,
    // The foot
    presetsDrawer,
    samplesDrawer,
    modulationDrawer,
    takesDrawer,
    keysDrawer,
    padDrawer,
    cpu,
    dropped,
    // The sheet of settings
    closeSettings,
    settingsKeys, ///< while nothing of it is pointed at
    noteOn,
    noteOff,
    startAnew,
    programs,
    embedding,
    steadyLevel,
    zoom,
    knobStyle,
    levelSwitch,
    spectrumSwitch,
    scopeSwitch,
    reducedMotion,
    audioDevices,
    midiDevices,
    // Below the standalone's window
    audioButton,
    keyboard,
};

/// A row of the table.
struct HelpText {
    HelpId id;
    const char* sentence; ///< '@' stands for what is told with it
    std::optional<Shortcut> shortcut = {}, opposite = {};
};

/// All rows, in the order of HelpId. Any thread.
std::span<const HelpText> helpTexts() noexcept;

/// The sentence, with told in the place of its '@', and its key: "Freeze the scan (F)". Any thread
/// but RENDER.
std::string helpText(HelpId id, const std::string& told = {});
/// Of a control: "Density: How many grains start in a second. 0.5 to 400 Hz." Any thread but
/// RENDER.
std::string helpText(ControlId id);

} // namespace zephyra
